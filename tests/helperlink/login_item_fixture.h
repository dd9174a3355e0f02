#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

#include "helperlink/login_item.h"
#include "tests/support/fake_login_items.h"

namespace veltrix::testing {

inline const char* const kHelper = "/opt/veltrix/VeltrixHelper.app";

struct Counts {
  std::uint32_t location = 99;
  std::uint32_t pathName = 99;
  std::uint32_t name = 99;
  friend bool operator==(const Counts&, const Counts&) = default;
};

class LoginItemTest : public ::testing::Test {
 protected:
  // Looks without removing.
  std::int32_t find(const std::optional<std::string>& path, const std::optional<std::string>& name) {
    return FindLoginItem(path, false, &fCounts.location, false, &fCounts.pathName, name, false,
                         &fCounts.name);
  }

  FakeLoginItems fList;
  Counts fCounts;
};

}  // namespace veltrix::testing
