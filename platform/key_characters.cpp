#include "platform/key_characters.h"

#include <linux/input-event-codes.h>

namespace veltrix::xkb {
namespace {

constexpr char16_t kFunctionKey = 0x10;

bool isFunctionKey(std::uint32_t evdevCode) {
  return (evdevCode >= KEY_F1 && evdevCode <= KEY_F10) || evdevCode == KEY_F11 || evdevCode == KEY_F12 ||
         (evdevCode >= KEY_F13 && evdevCode <= KEY_F24);
}

// The digit of a key of the keypad while Num Lock is off.
std::optional<char16_t> digitOfKeypad(xkb_keysym_t keysym) {
  switch (keysym) {
    case XKB_KEY_KP_Insert:
      return u'0';
    case XKB_KEY_KP_End:
      return u'1';
    case XKB_KEY_KP_Down:
      return u'2';
    case XKB_KEY_KP_Next:
      return u'3';
    case XKB_KEY_KP_Left:
      return u'4';
    case XKB_KEY_KP_Begin:
      return u'5';
    case XKB_KEY_KP_Right:
      return u'6';
    case XKB_KEY_KP_Home:
      return u'7';
    case XKB_KEY_KP_Up:
      return u'8';
    case XKB_KEY_KP_Prior:
      return u'9';
    case XKB_KEY_KP_Delete:
      return u'.';
    default:
      return std::nullopt;
  }
}

}  // namespace

std::optional<char16_t> characterOfNamedKey(std::uint32_t evdevCode, xkb_keysym_t keysym) {
  if (isFunctionKey(evdevCode)) {
    return kFunctionKey;
  }
  switch (keysym) {
    case XKB_KEY_Home:
      return 0x01;
    case XKB_KEY_End:
      return 0x04;
    case XKB_KEY_Help:
    case XKB_KEY_Insert:  // the key that lies where the help key does on other makes of keyboards
      return 0x05;
    case XKB_KEY_BackSpace:
      return 0x08;
    case XKB_KEY_Tab:
    case XKB_KEY_ISO_Left_Tab:
      return 0x09;
    case XKB_KEY_Page_Up:
      return 0x0B;
    case XKB_KEY_Page_Down:
      return 0x0C;
    case XKB_KEY_Return:
      return 0x0D;
    case XKB_KEY_Escape:
    case XKB_KEY_Clear:
      return 0x1B;
    case XKB_KEY_Left:
      return 0x1C;
    case XKB_KEY_Right:
      return 0x1D;
    case XKB_KEY_Up:
      return 0x1E;
    case XKB_KEY_Down:
      return 0x1F;
    case XKB_KEY_Delete:
      return 0x7F;
    default:
      return std::nullopt;
  }
}

std::optional<char16_t> characterOfKeypad(xkb_keysym_t keysym) {
  switch (keysym) {
    case XKB_KEY_KP_Enter:
      return 0x03;
    case XKB_KEY_Num_Lock:
    case XKB_KEY_Clear:
      return 0x1B;
    default:
      break;
  }
  if (const auto digit = digitOfKeypad(keysym)) {
    return digit;
  }
  const auto character = xkb_keysym_to_utf32(keysym);
  return character > 0 && character < 0x10000 ? std::optional(static_cast<char16_t>(character))
                                              : std::nullopt;
}

bool isOnKeypad(std::uint32_t evdevCode) {
  switch (evdevCode) {
    case KEY_NUMLOCK:
    case KEY_KPASTERISK:
    case KEY_KPSLASH:
    case KEY_KPENTER:
    case KEY_KPEQUAL:
    case KEY_KPCOMMA:
    case KEY_KPJPCOMMA:
      return true;
    default:
      return evdevCode >= KEY_KP7 && evdevCode <= KEY_KPDOT;
  }
}

char32_t controlCharacterOf(char32_t character) {
  constexpr char32_t kControlBits = 0x1F;
  if (character == U' ' || (character >= U'@' && character <= U'~')) {
    return character & kControlBits;
  }
  switch (character) {
    case U'2':
      return 0x00;
    case U'3':
    case U'4':
    case U'5':
    case U'6':
    case U'7':
      return character - U'3' + 0x1B;
    case U'8':
      return 0x7F;
    case U'/':
      return U'_' & kControlBits;
    default:
      return character;
  }
}

}  // namespace veltrix::xkb
