#include "platform/string_tables.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <thread>
#include <vector>

#include "tests/support/catalog_bytes.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/thread_locale.h"

namespace veltrix {
namespace {

using testing::ThreadLanguage;

class StringTablesTest : public ::testing::Test {
 protected:
  void add(const std::string& language, const std::string& table,
           const std::map<std::string, std::string>& texts) {
    testing::writeFile(fFolder / (language + "/LC_MESSAGES/" + table + ".mo"), testing::catalogBytes(texts));
  }

  testing::TemporaryFolder fFolder;
  StringTables fTables{fFolder.path()};
};

TEST_F(StringTablesTest, UsersLanguageComesFirst) {
  add("en", "Localizable", {{"KEY", "english"}});
  add("de", "Localizable", {{"KEY", "grün"}});
  const ThreadLanguage german("de");
  EXPECT_EQ(fTables.find("KEY", "Localizable"), "grün");
}

TEST_F(StringTablesTest, RegionFallsBackToItsLanguage) {
  add("de", "Localizable", {{"KEY", "deutsch"}});
  const ThreadLanguage german("de_AT.UTF-8");
  EXPECT_EQ(fTables.find("KEY", "Localizable"), "deutsch");
}

TEST_F(StringTablesTest, EnglishIsUsedUnderTheCLocale) {
  add("en", "Localizable", {{"KEY", "english"}});
  add("de", "Localizable", {{"KEY", "deutsch"}});
  const ThreadLanguage none(std::nullopt);
  EXPECT_EQ(fTables.find("KEY", "Localizable"), "english");
}

TEST_F(StringTablesTest, EnglishIsUsedWhenTheLanguageHasNoCatalogue) {
  add("en", "Localizable", {{"KEY", "english"}});
  const ThreadLanguage french("fr");
  EXPECT_EQ(fTables.find("KEY", "Localizable"), "english");
}

TEST_F(StringTablesTest, EnglishIsUsedWhenTheLanguageLacksTheText) {
  add("en", "Localizable", {{"KEY", "english"}});
  add("de", "Localizable", {{"OTHER", "anderer"}});
  const ThreadLanguage german("de");
  EXPECT_EQ(fTables.find("KEY", "Localizable"), "english");
  EXPECT_EQ(fTables.find("OTHER", "Localizable"), "anderer");
}

TEST_F(StringTablesTest, KeyWithoutAnyTextHasNone) {
  add("en", "Localizable", {{"KEY", "english"}});
  add("de", "Localizable", {{"KEY", "deutsch"}});
  const ThreadLanguage german("de");
  EXPECT_EQ(fTables.find("UNKNOWN", "Localizable"), std::nullopt);
  EXPECT_EQ(fTables.find("KEY", "NoSuchTable"), std::nullopt);
}

TEST_F(StringTablesTest, TextThatEqualsItsKeyIsAText) {
  add("en", "Localizable", {{"Type", "never"}});
  add("de", "Localizable", {{"Type", "Type"}});
  const ThreadLanguage german("de");
  EXPECT_EQ(fTables.find("Type", "Localizable"), "Type");
}

TEST_F(StringTablesTest, EmptyKeyDoesNotShowTheDescriptionOfTheCatalogue) {
  add("de", "Localizable", {{"KEY", "deutsch"}});
  const ThreadLanguage german("de");
  EXPECT_EQ(fTables.find("", "Localizable"), std::nullopt);
  EXPECT_EQ(fTables.find("KEY", ""), std::nullopt);
  EXPECT_EQ(fTables.find(std::string_view("KEY\0x", 5), "Localizable"), std::nullopt);
}

TEST_F(StringTablesTest, TablesAreApart) {
  add("de", "Localizable", {{"KEY", "eins"}});
  add("de", "Keys", {{"KEY", "zwei"}});
  const ThreadLanguage german("de");
  EXPECT_EQ(fTables.find("KEY", "Localizable"), "eins");
  EXPECT_EQ(fTables.find("KEY", "Keys"), "zwei");
}

TEST_F(StringTablesTest, FoldersAreApart) {
  add("de", "Localizable", {{"KEY", "hier"}});
  const testing::TemporaryFolder other;
  testing::writeFile(other / "de/LC_MESSAGES/Localizable.mo", testing::catalogBytes({{"KEY", "dort"}}));
  StringTables otherTables(other.path());
  const ThreadLanguage german("de");
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(fTables.find("KEY", "Localizable"), "hier");
    EXPECT_EQ(otherTables.find("KEY", "Localizable"), "dort");
  }
}

TEST_F(StringTablesTest, ThreadsMayLookUpTogether) {
  add("en", "Localizable", {{"KEY", "english"}});
  std::vector<std::thread> threads;
  threads.reserve(4);
  std::atomic<int> wrong = 0;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int turn = 0; turn < 500; ++turn) {
        wrong += fTables.find("KEY", "Localizable") == "english" ? 0 : 1;
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(wrong, 0);
}

// The catalogues that are delivered, in a folder of their own because gettext remembers answers.
class DeliveredTexts : public ::testing::Test {
 protected:
  DeliveredTexts() {
    const char* resources = std::getenv("VELTRIX_RESOURCES");
    std::filesystem::copy(std::string(resources != nullptr ? resources : "") + "/locale", fFolder / "locale",
                          std::filesystem::copy_options::recursive);
  }

  testing::TemporaryFolder fFolder;
  StringTables fTables{fFolder / "locale"};
};

TEST_F(DeliveredTexts, WarningsAreEnglishUnderTheCLocale) {
  const ThreadLanguage none(std::nullopt);
  for (const char* key : {"SNAP_WARNING_10.8", "SNAP_WARNING_10.9"}) {
    const auto text = fTables.find(key, "Localizable");
    ASSERT_TRUE(text.has_value()) << key;
    EXPECT_NE(text->find("accessibility service"), std::string::npos) << *text;
    EXPECT_NE(text->find("Under Wayland"), std::string::npos) << *text;
  }
}

TEST_F(DeliveredTexts, GermanSpeaksOfEveryKey) {
  const ThreadLanguage german("de");
  EXPECT_EQ(fTables.find("No device found.", "Localizable"), "Kein Gerät gefunden.");
  for (const char* key : {"SNAP_WARNING_10.8", "SNAP_WARNING_10.9"}) {
    const auto text = fTables.find(key, "Localizable");
    ASSERT_TRUE(text.has_value()) << key;
    EXPECT_NE(text->find("Barrierefreiheit"), std::string::npos) << *text;
    EXPECT_NE(text->find("Unter Wayland"), std::string::npos) << *text;
  }
}

}  // namespace
}  // namespace veltrix
