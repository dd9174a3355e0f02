#include "helper/desktop/mime_applications.h"

#include <gmock/gmock.h>

#include "platform/user_paths.h"
#include "tests/helper/desktop/desktop_fixture.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;

constexpr const char* kType = "x-scheme-handler/https";

class MimeApplications : public testing::DesktopFixture {
 protected:
  MimeApplications() {
    for (const char* name : {"one", "two", "three"}) {
      addEntry(name, "Exec=/bin/true %u\n");
    }
  }
  void add(const std::string& path, const std::string& group, const std::string& value) const {
    testing::writeFile(fFolder / path, "[" + group + "]\n" + kType + "=" + value + "\n");
  }
  static std::string chosen() {
    const auto application = defaultApplication(kType, standardApplicationSearch(), configDirectories());
    return application ? application->identifier : "(none)";
  }
};

TEST(ReadMimeChoices, TakesTheListsOfItsTypeAlone) {
  const MimeChoices choices = readMimeChoices(
      "[Default Applications]\na/b=one.desktop;two.desktop;\na/bc=three.desktop\n[Added Associations]\n"
      "a/b=four.desktop\n[Removed Associations]\na/b=five.desktop;\n[MIME Cache]\na/b=six.desktop;\n",
      "a/b");
  EXPECT_THAT(choices.defaults, ElementsAre("one.desktop", "two.desktop"));
  EXPECT_THAT(choices.added, ElementsAre("four.desktop"));
  EXPECT_THAT(choices.removed, ElementsAre("five.desktop"));
  EXPECT_THAT(choices.cached, ElementsAre("six.desktop"));
  EXPECT_EQ(readMimeChoices("nothing that makes sense", "a/b"), MimeChoices());
}

TEST_F(MimeApplications, WithoutAnyChoiceThereIsNone) {
  EXPECT_EQ(chosen(), "(none)");
}

TEST_F(MimeApplications, UsersChoiceComesBeforeTheSystems) {
  add("data/applications/mimeapps.list", "Default Applications", "three.desktop");
  EXPECT_EQ(chosen(), "three");
  add("etc/mimeapps.list", "Default Applications", "two.desktop");
  EXPECT_EQ(chosen(), "two");
  add("home/.config/mimeapps.list", "Default Applications", "one.desktop");
  EXPECT_EQ(chosen(), "one");
}

TEST_F(MimeApplications, ChoiceForThisDesktopComesBeforeTheOneForAll) {
  add("home/.config/mimeapps.list", "Default Applications", "one.desktop");
  add("home/.config/kde-mimeapps.list", "Default Applications", "three.desktop");
  EXPECT_EQ(chosen(), "one");
  add("home/.config/gnome-mimeapps.list", "Default Applications", "two.desktop");
  EXPECT_EQ(chosen(), "two");
  add("home/.config/budgie-mimeapps.list", "Default Applications", "three.desktop");
  EXPECT_EQ(chosen(), "three");
}

TEST_F(MimeApplications, NameOfADesktopLeadsToNoOtherFolder) {
  const testing::ScopedEnvironment desktop("XDG_CURRENT_DESKTOP", "../evil");
  add("home/evil-mimeapps.list", "Default Applications", "one.desktop");
  EXPECT_EQ(chosen(), "(none)");
}

TEST_F(MimeApplications, FirstOneThatIsInstalledCounts) {
  add("home/.config/mimeapps.list", "Default Applications", "missing.desktop;two;two.desktop;one.desktop");
  EXPECT_EQ(chosen(), "two");
}

TEST_F(MimeApplications, WithoutADefaultAnApplicationThatKnowsTheTypeServes) {
  add("data/applications/mimeinfo.cache", "MIME Cache", "three.desktop;two.desktop;");
  EXPECT_EQ(chosen(), "three");
  add("etc/mimeapps.list", "Added Associations", "one.desktop;");
  EXPECT_EQ(chosen(), "one");
  add("home/.config/mimeapps.list", "Removed Associations", "one.desktop;three.desktop;");
  EXPECT_EQ(chosen(), "two");
}

}  // namespace
}  // namespace veltrix
