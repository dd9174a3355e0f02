#include "helper/typing/known_places.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace veltrix {
namespace {

struct Row {
  std::uint16_t first;
  std::string_view plain;
  std::string_view shifted;
};

constexpr std::array<Row, 5> kAmericanRows{{
    {KEY_1, "1234567890-=", "!@#$%^&*()_+"},
    {KEY_Q, "qwertyuiop[]", "QWERTYUIOP{}"},
    {KEY_A, "asdfghjkl;'`", "ASDFGHJKL:\"~"},
    {KEY_BACKSLASH, "\\zxcvbnm,./", "|ZXCVBNM<>?"},
    {KEY_SPACE, " ", ""},
}};

struct NamedPlace {
  xkb_keysym_t keysym;
  std::uint16_t code;
};

constexpr std::array kNamedPlaces = std::to_array<NamedPlace>({
    {XKB_KEY_BackSpace, KEY_BACKSPACE},
    {XKB_KEY_Tab, KEY_TAB},
    {XKB_KEY_Return, KEY_ENTER},
    {XKB_KEY_Escape, KEY_ESC},
    {XKB_KEY_Delete, KEY_DELETE},
    {XKB_KEY_Insert, KEY_INSERT},
    {XKB_KEY_Home, KEY_HOME},
    {XKB_KEY_End, KEY_END},
    {XKB_KEY_Page_Up, KEY_PAGEUP},
    {XKB_KEY_Page_Down, KEY_PAGEDOWN},
    {XKB_KEY_Left, KEY_LEFT},
    {XKB_KEY_Right, KEY_RIGHT},
    {XKB_KEY_Up, KEY_UP},
    {XKB_KEY_Down, KEY_DOWN},
    {XKB_KEY_Print, KEY_SYSRQ},
    {XKB_KEY_Pause, KEY_PAUSE},
    {XKB_KEY_Scroll_Lock, KEY_SCROLLLOCK},
    {XKB_KEY_Menu, KEY_COMPOSE},
    {XKB_KEY_Help, KEY_HELP},
    {XKB_KEY_Undo, KEY_UNDO},
    {XKB_KEY_Redo, KEY_REDO},
    {XKB_KEY_Find, KEY_FIND},
    {XKB_KEY_F11, KEY_F11},
    {XKB_KEY_F12, KEY_F12},
    {XKB_KEY_Super_L, KEY_LEFTMETA},
    {XKB_KEY_Super_R, KEY_RIGHTMETA},
    {XKB_KEY_XF86AudioMute, KEY_MUTE},
    {XKB_KEY_XF86AudioLowerVolume, KEY_VOLUMEDOWN},
    {XKB_KEY_XF86AudioRaiseVolume, KEY_VOLUMEUP},
    {XKB_KEY_XF86AudioPlay, KEY_PLAYPAUSE},
    {XKB_KEY_XF86AudioPause, KEY_PAUSECD},
    {XKB_KEY_XF86AudioStop, KEY_STOPCD},
    {XKB_KEY_XF86AudioNext, KEY_NEXTSONG},
    {XKB_KEY_XF86AudioPrev, KEY_PREVIOUSSONG},
    {XKB_KEY_XF86AudioForward, KEY_FASTFORWARD},
    {XKB_KEY_XF86AudioRewind, KEY_REWIND},
    {XKB_KEY_XF86AudioRecord, KEY_RECORD},
    {XKB_KEY_XF86AudioMedia, KEY_MEDIA},
    {XKB_KEY_XF86Eject, KEY_EJECTCD},
    {XKB_KEY_XF86MonBrightnessDown, KEY_BRIGHTNESSDOWN},
    {XKB_KEY_XF86MonBrightnessUp, KEY_BRIGHTNESSUP},
    {XKB_KEY_XF86KbdLightOnOff, KEY_KBDILLUMTOGGLE},
    {XKB_KEY_XF86KbdBrightnessDown, KEY_KBDILLUMDOWN},
    {XKB_KEY_XF86KbdBrightnessUp, KEY_KBDILLUMUP},
    {XKB_KEY_XF86Display, KEY_SWITCHVIDEOMODE},
    {XKB_KEY_XF86PowerOff, KEY_POWER},
    {XKB_KEY_XF86Sleep, KEY_SLEEP},
    {XKB_KEY_XF86WakeUp, KEY_WAKEUP},
    {XKB_KEY_XF86Suspend, KEY_SUSPEND},
    {XKB_KEY_XF86ScreenSaver, KEY_SCREENLOCK},
    {XKB_KEY_XF86Calculator, KEY_CALC},
    {XKB_KEY_XF86Mail, KEY_MAIL},
    {XKB_KEY_XF86WWW, KEY_WWW},
    {XKB_KEY_XF86HomePage, KEY_HOMEPAGE},
    {XKB_KEY_XF86Explorer, KEY_FILE},
    {XKB_KEY_XF86MyComputer, KEY_COMPUTER},
    {XKB_KEY_XF86Tools, KEY_CONFIG},
    {XKB_KEY_XF86Favorites, KEY_BOOKMARKS},
    {XKB_KEY_XF86Back, KEY_BACK},
    {XKB_KEY_XF86Forward, KEY_FORWARD},
    {XKB_KEY_XF86Reload, KEY_REFRESH},
    {XKB_KEY_XF86Stop, KEY_STOP},
    {XKB_KEY_XF86Search, KEY_SEARCH},
    {XKB_KEY_XF86New, KEY_NEW},
    {XKB_KEY_XF86Open, KEY_OPEN},
    {XKB_KEY_XF86Close, KEY_CLOSE},
    {XKB_KEY_XF86Save, KEY_SAVE},
    {XKB_KEY_XF86Copy, KEY_COPY},
    {XKB_KEY_XF86Cut, KEY_CUT},
    {XKB_KEY_XF86Paste, KEY_PASTE},
    {XKB_KEY_XF86ScrollUp, KEY_SCROLLUP},
    {XKB_KEY_XF86ScrollDown, KEY_SCROLLDOWN},
});

std::optional<KeysymKey> placeOfCharacter(xkb_keysym_t keysym) {
  const auto character = static_cast<char>(keysym);  // ASCII has its own numbers as keysyms
  for (const auto& row : kAmericanRows) {
    const auto plain = row.plain.find(character);
    const auto shifted = row.shifted.find(character);
    if (plain != std::string_view::npos) {
      return KeysymKey{keysym, static_cast<std::uint16_t>(row.first + plain), 0};
    }
    if (shifted != std::string_view::npos) {
      return KeysymKey{keysym, static_cast<std::uint16_t>(row.first + shifted), kHeldShift};
    }
  }
  return std::nullopt;
}

// F11 and F12 came to keyboards later and lie elsewhere.
std::optional<std::uint16_t> placeOfFunctionKey(xkb_keysym_t keysym) {
  if (keysym >= XKB_KEY_F1 && keysym <= XKB_KEY_F10) {
    return static_cast<std::uint16_t>(KEY_F1 + (keysym - XKB_KEY_F1));
  }
  if (keysym >= XKB_KEY_F13 && keysym <= XKB_KEY_F24) {
    return static_cast<std::uint16_t>(KEY_F13 + (keysym - XKB_KEY_F13));
  }
  return std::nullopt;
}

}  // namespace

std::optional<KeysymKey> knownPlaceOf(xkb_keysym_t keysym) {
  if (keysym >= XKB_KEY_space && keysym <= XKB_KEY_asciitilde) {
    return placeOfCharacter(keysym);
  }
  if (const auto code = placeOfFunctionKey(keysym)) {
    return KeysymKey{keysym, *code, 0};
  }
  const auto* const named = std::find_if(kNamedPlaces.begin(), kNamedPlaces.end(),
                                         [&](const NamedPlace& place) { return place.keysym == keysym; });
  return named != kNamedPlaces.end() ? std::optional(KeysymKey{keysym, named->code, 0}) : std::nullopt;
}

}  // namespace veltrix
