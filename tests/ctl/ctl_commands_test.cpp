#include "tests/ctl/ctl_test.h"

namespace veltrix {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class CtlCommands : public testing::CtlTest {};

TEST_F(CtlCommands, ListsTheCatalogueByCategory) {
  const auto run = ctl({"commands"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_THAT(run.output, AllOf(StartsWith("General\n    0  No Action\n"), HasSubstr("\n\nEditing\n"),
                                HasSubstr("\n   35  Copy\n")));
}

TEST_F(CtlCommands, ListsKindsAsJson) {
  const auto categories = json({"commands", "--json"});
  ASSERT_GE(categories.size(), 10U);
  EXPECT_EQ(categories[1]["category"], "Clicks");
  EXPECT_EQ(categories[1]["commands"][0],
            nlohmann::json({{"command", 1}, {"name", "Click"}, {"kind", "click"}}));
}

}  // namespace
}  // namespace veltrix
