#include "keyboard/keystroke_qt_keys.h"

#include <linux/input-event-codes.h>

#include <Qt>
#include <algorithm>
#include <array>
#include <span>

namespace veltrix {
namespace {

struct QtKey {
  int key;
  std::uint16_t evdevCode;
};

constexpr auto kMainKeys = std::to_array<QtKey>({
    // clang-format off
    {Qt::Key_A, KEY_A}, {Qt::Key_B, KEY_B}, {Qt::Key_C, KEY_C}, {Qt::Key_D, KEY_D}, {Qt::Key_E, KEY_E},
    {Qt::Key_F, KEY_F}, {Qt::Key_G, KEY_G}, {Qt::Key_H, KEY_H}, {Qt::Key_I, KEY_I}, {Qt::Key_J, KEY_J},
    {Qt::Key_K, KEY_K}, {Qt::Key_L, KEY_L}, {Qt::Key_M, KEY_M}, {Qt::Key_N, KEY_N}, {Qt::Key_O, KEY_O},
    {Qt::Key_P, KEY_P}, {Qt::Key_Q, KEY_Q}, {Qt::Key_R, KEY_R}, {Qt::Key_S, KEY_S}, {Qt::Key_T, KEY_T},
    {Qt::Key_U, KEY_U}, {Qt::Key_V, KEY_V}, {Qt::Key_W, KEY_W}, {Qt::Key_X, KEY_X}, {Qt::Key_Y, KEY_Y},
    {Qt::Key_Z, KEY_Z},
    {Qt::Key_0, KEY_0}, {Qt::Key_1, KEY_1}, {Qt::Key_2, KEY_2}, {Qt::Key_3, KEY_3}, {Qt::Key_4, KEY_4},
    {Qt::Key_5, KEY_5}, {Qt::Key_6, KEY_6}, {Qt::Key_7, KEY_7}, {Qt::Key_8, KEY_8}, {Qt::Key_9, KEY_9},
    {Qt::Key_ParenRight, KEY_0}, {Qt::Key_Exclam, KEY_1}, {Qt::Key_At, KEY_2}, {Qt::Key_NumberSign, KEY_3},
    {Qt::Key_Dollar, KEY_4}, {Qt::Key_Percent, KEY_5}, {Qt::Key_AsciiCircum, KEY_6},
    {Qt::Key_Ampersand, KEY_7}, {Qt::Key_Asterisk, KEY_8}, {Qt::Key_ParenLeft, KEY_9},
    {Qt::Key_Minus, KEY_MINUS}, {Qt::Key_Underscore, KEY_MINUS}, {Qt::Key_Equal, KEY_EQUAL},
    {Qt::Key_Plus, KEY_EQUAL}, {Qt::Key_BracketLeft, KEY_LEFTBRACE}, {Qt::Key_BraceLeft, KEY_LEFTBRACE},
    {Qt::Key_BracketRight, KEY_RIGHTBRACE}, {Qt::Key_BraceRight, KEY_RIGHTBRACE},
    {Qt::Key_Backslash, KEY_BACKSLASH}, {Qt::Key_Bar, KEY_BACKSLASH}, {Qt::Key_Semicolon, KEY_SEMICOLON},
    {Qt::Key_Colon, KEY_SEMICOLON}, {Qt::Key_Apostrophe, KEY_APOSTROPHE},
    {Qt::Key_QuoteDbl, KEY_APOSTROPHE}, {Qt::Key_Comma, KEY_COMMA}, {Qt::Key_Less, KEY_COMMA},
    {Qt::Key_Period, KEY_DOT}, {Qt::Key_Greater, KEY_DOT}, {Qt::Key_Slash, KEY_SLASH},
    {Qt::Key_Question, KEY_SLASH}, {Qt::Key_QuoteLeft, KEY_GRAVE}, {Qt::Key_AsciiTilde, KEY_GRAVE},
    {Qt::Key_Space, KEY_SPACE}, {Qt::Key_Return, KEY_ENTER}, {Qt::Key_Tab, KEY_TAB},
    {Qt::Key_Backtab, KEY_TAB}, {Qt::Key_Escape, KEY_ESC}, {Qt::Key_Backspace, KEY_BACKSPACE},
    {Qt::Key_Delete, KEY_DELETE}, {Qt::Key_Insert, KEY_INSERT}, {Qt::Key_Help, KEY_INSERT},
    {Qt::Key_Home, KEY_HOME}, {Qt::Key_End, KEY_END}, {Qt::Key_PageUp, KEY_PAGEUP},
    {Qt::Key_PageDown, KEY_PAGEDOWN}, {Qt::Key_Left, KEY_LEFT}, {Qt::Key_Right, KEY_RIGHT},
    {Qt::Key_Up, KEY_UP}, {Qt::Key_Down, KEY_DOWN}, {Qt::Key_Menu, KEY_COMPOSE},
    {Qt::Key_Print, KEY_SYSRQ}, {Qt::Key_SysReq, KEY_SYSRQ}, {Qt::Key_ScrollLock, KEY_SCROLLLOCK},
    {Qt::Key_Pause, KEY_PAUSE}, {Qt::Key_NumLock, KEY_NUMLOCK}, {Qt::Key_Clear, KEY_NUMLOCK},
    {Qt::Key_Enter, KEY_KPENTER},
    {Qt::Key_F1, KEY_F1}, {Qt::Key_F2, KEY_F2}, {Qt::Key_F3, KEY_F3}, {Qt::Key_F4, KEY_F4},
    {Qt::Key_F5, KEY_F5}, {Qt::Key_F6, KEY_F6}, {Qt::Key_F7, KEY_F7}, {Qt::Key_F8, KEY_F8},
    {Qt::Key_F9, KEY_F9}, {Qt::Key_F10, KEY_F10}, {Qt::Key_F11, KEY_F11}, {Qt::Key_F12, KEY_F12},
    {Qt::Key_F13, KEY_F13}, {Qt::Key_F14, KEY_F14}, {Qt::Key_F15, KEY_F15}, {Qt::Key_F16, KEY_F16},
    {Qt::Key_F17, KEY_F17}, {Qt::Key_F18, KEY_F18}, {Qt::Key_F19, KEY_F19}, {Qt::Key_F20, KEY_F20},
    {Qt::Key_yen, KEY_YEN}, {Qt::Key_Hangul, KEY_HANGEUL}, {Qt::Key_Hangul_Hanja, KEY_HANJA},
    {Qt::Key_VolumeUp, KEY_VOLUMEUP}, {Qt::Key_VolumeDown, KEY_VOLUMEDOWN}, {Qt::Key_VolumeMute, KEY_MUTE},
    // clang-format on
});

// With and without num lock. Clear is the middle key without it.
constexpr auto kKeypadKeys = std::to_array<QtKey>({
    // clang-format off
    {Qt::Key_0, KEY_KP0}, {Qt::Key_1, KEY_KP1}, {Qt::Key_2, KEY_KP2}, {Qt::Key_3, KEY_KP3},
    {Qt::Key_4, KEY_KP4}, {Qt::Key_5, KEY_KP5}, {Qt::Key_6, KEY_KP6}, {Qt::Key_7, KEY_KP7},
    {Qt::Key_8, KEY_KP8}, {Qt::Key_9, KEY_KP9},
    {Qt::Key_Insert, KEY_KP0}, {Qt::Key_End, KEY_KP1}, {Qt::Key_Down, KEY_KP2}, {Qt::Key_PageDown, KEY_KP3},
    {Qt::Key_Left, KEY_KP4}, {Qt::Key_Clear, KEY_KP5}, {Qt::Key_Right, KEY_KP6}, {Qt::Key_Home, KEY_KP7},
    {Qt::Key_Up, KEY_KP8}, {Qt::Key_PageUp, KEY_KP9}, {Qt::Key_Delete, KEY_KPDOT},
    {Qt::Key_Period, KEY_KPDOT}, {Qt::Key_Comma, KEY_KPDOT}, {Qt::Key_Asterisk, KEY_KPASTERISK},
    {Qt::Key_Plus, KEY_KPPLUS}, {Qt::Key_Minus, KEY_KPMINUS}, {Qt::Key_Slash, KEY_KPSLASH},
    {Qt::Key_Equal, KEY_KPEQUAL},
    // clang-format on
});

std::optional<std::uint16_t> find(std::span<const QtKey> keys, int key) {
  const auto found = std::ranges::find(keys, key, &QtKey::key);
  return found == keys.end() ? std::nullopt : std::optional(found->evdevCode);
}

}  // namespace

std::optional<std::uint16_t> evdevCodeOfQtKey(int key, bool keypad) {
  const auto onKeypad = keypad ? find(kKeypadKeys, key) : std::nullopt;
  return onKeypad ? onKeypad : find(kMainKeys, key);
}

}  // namespace veltrix
