#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "keyboard/layout_access.h"

namespace veltrix::testing {

// The layout of a name; the test fails when there is none.
inline std::shared_ptr<const KeyboardLayout> layoutNamed(const std::string& name) {
  auto layout = KeyboardLayout::named(name);
  EXPECT_TRUE(layout.ok()) << name;
  return layout ? std::make_shared<const KeyboardLayout>(std::move(layout.value())) : nullptr;
}

// The desktop has the layout of that name, or no layout at all, until the end of the scope.
class ScopedLayout {
 public:
  explicit ScopedLayout(const std::string& name) : fLayout(layoutNamed(name)) {
    setKeyboardLayoutSource([layout = fLayout] { return layout; });
  }
  ScopedLayout() {
    setKeyboardLayoutSource([] { return nullptr; });
  }
  ~ScopedLayout() { setKeyboardLayoutSource({}); }
  ScopedLayout(const ScopedLayout&) = delete;
  ScopedLayout& operator=(const ScopedLayout&) = delete;

  const KeyboardLayout& layout() const { return *fLayout; }

 private:
  std::shared_ptr<const KeyboardLayout> fLayout;
};

}  // namespace veltrix::testing
