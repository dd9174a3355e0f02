#pragma once

#include <xkbcommon/xkbcommon-compose.h>
#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <memory>

// The objects of libxkbcommon with owners.
namespace veltrix::xkb {

template <auto kRelease>
struct Release {
  template <typename T>
  void operator()(T* object) const {
    kRelease(object);
  }
};

using Context = std::unique_ptr<xkb_context, Release<xkb_context_unref>>;
using Keymap = std::unique_ptr<xkb_keymap, Release<xkb_keymap_unref>>;
using State = std::unique_ptr<xkb_state, Release<xkb_state_unref>>;
using ComposeTable = std::unique_ptr<xkb_compose_table, Release<xkb_compose_table_unref>>;
using ComposeState = std::unique_ptr<xkb_compose_state, Release<xkb_compose_state_unref>>;

// The code of a key in a keymap.
constexpr xkb_keycode_t keycodeOf(std::uint32_t evdevCode) {
  return evdevCode + 8;
}

}  // namespace veltrix::xkb
