#include "tests/driver/inertia_page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace veltrix {
namespace {

using ::testing::HasSubstr;

constexpr const char* kHowToWrite = "write it anew with the program inertia_page, as the page says";

std::string contentsOf(const std::string& name) {
  std::ifstream file(VELTRIX_DOCS "/" + name);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

TEST(InertiaPage, ItsTableIsWhatTheEngineDoes) {
  const std::string table = inertiaTable();
  ASSERT_THAT(table, HasSubstr("| 10 |"));
  EXPECT_THAT(contentsOf("inertia.md"), HasSubstr("|---|---|---|---|---|\n" + table + "\n")) << kHowToWrite;
}

TEST(InertiaPage, ItsPlotIsWhatTheEngineDoes) {
  EXPECT_EQ(contentsOf("pictures/inertia.svg"), inertiaPlot()) << kHowToWrite;
}

}  // namespace
}  // namespace veltrix
