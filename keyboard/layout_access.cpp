#include "keyboard/layout_access.h"

#include <utility>

#include "keyboard/virtual_keys.h"
#include "platform/mac_roman.h"
#include "settings/modifier_mask.h"

namespace {

constexpr std::int32_t kParameterError = -50;
constexpr std::int32_t kNoLayout = -192;

struct Access {
  veltrix::KeyboardLayoutSource source;
  std::shared_ptr<const veltrix::KeyboardLayout> layout;
};

Access& access() {
  static Access theOne;
  return theOne;
}

std::shared_ptr<const veltrix::KeyboardLayout> layoutOfDesktop() {
  auto layout = veltrix::KeyboardLayout::current();
  return layout ? std::make_shared<const veltrix::KeyboardLayout>(std::move(layout.value())) : nullptr;
}

}  // namespace

std::int32_t CompatibleGetKeyboardLayout(const veltrix::KeyboardLayout** layout, const void** legacyLayout) {
  if (layout == nullptr || legacyLayout == nullptr) {
    return kParameterError;
  }
  auto& current = access();
  current.layout = current.source ? current.source() : layoutOfDesktop();
  *layout = current.layout.get();
  *legacyLayout = nullptr;
  return *layout != nullptr ? 0 : kNoLayout;
}

std::uint8_t CompatibleKeyTranslate(std::uint8_t keyCode, std::uint16_t modifiers,
                                    const veltrix::KeyboardLayout* layout, const void* /*legacyLayout*/,
                                    std::uint32_t* deadKeyState) {
  if (layout == nullptr) {
    return 0;
  }
  std::uint32_t ownState = 0;
  const auto unit = veltrix::translateVirtualKey(
      *layout, keyCode, static_cast<std::uint8_t>(modifiers >> veltrix::kModifierByteShift),
      deadKeyState != nullptr ? *deadKeyState : ownState);
  return unit ? veltrix::macRomanOrSubstitute(*unit) : 0;
}

namespace veltrix {

void setKeyboardLayoutSource(KeyboardLayoutSource source) {
  access().source = std::move(source);
}

std::optional<char16_t> translateVirtualKey(const KeyboardLayout& layout, std::uint8_t keyCode,
                                            std::uint8_t modifierByte, std::uint32_t& deadKeyState) {
  const auto evdevCode = evdevCodeOf(keyCode);
  return evdevCode ? layout.translate(*evdevCode, modifierByte, deadKeyState) : std::nullopt;
}

}  // namespace veltrix
