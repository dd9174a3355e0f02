#include "pane/table_translator.h"

#include <gtest/gtest.h>

#include "tests/support/catalog_bytes.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/thread_locale.h"

namespace veltrix {
namespace {

class TableTranslatorTest : public ::testing::Test {
 protected:
  TableTranslatorTest() {
    testing::writeFile(fFolder / "locale/de/LC_MESSAGES/Localizable.mo",
                       testing::catalogBytes({{"Type", "Tippen:"}, {"Cancel", "Abbrechen"}}));
  }
  QString translate(const char* context, const char* text) const {
    return fTranslator.translate(context, text, nullptr, -1);
  }

 private:
  testing::TemporaryFolder fFolder;
  testing::ThreadLanguage fLanguage{"de"};
  Bundle fBundle{fFolder.path()};
  TableTranslator fTranslator{fBundle};
};

TEST_F(TableTranslatorTest, TextsOfTheProgramComeOutOfTheTable) {
  for (const char* context : {"VeltrixScrollParams", "veltrix::ItemPanel", "QObject", "", "Q", "Quick"}) {
    EXPECT_EQ(translate(context, "Type"), QStringLiteral("Tippen:")) << context;
  }
  EXPECT_EQ(translate(nullptr, "Type"), QStringLiteral("Tippen:"));
}

TEST_F(TableTranslatorTest, TextsOfTheToolkitAreItsOwn) {
  EXPECT_TRUE(translate("QFileSystemModel", "Type").isNull());
  EXPECT_TRUE(translate("QFileDialog", "Type").isNull());
}

TEST_F(TableTranslatorTest, ButtonsOfDialogsComeOutOfTheTable) {
  EXPECT_EQ(translate("QPlatformTheme", "Cancel"), QStringLiteral("Abbrechen"));
  EXPECT_EQ(translate("QDialogButtonBox", "Cancel"), QStringLiteral("Abbrechen"));
}

TEST_F(TableTranslatorTest, WithoutATextOthersHaveTheirTurn) {
  EXPECT_TRUE(translate("VeltrixScrollParams", "Unknown").isNull());
  EXPECT_TRUE(translate("VeltrixScrollParams", "").isNull());
  EXPECT_TRUE(translate("VeltrixScrollParams", nullptr).isNull());
}

}  // namespace
}  // namespace veltrix
