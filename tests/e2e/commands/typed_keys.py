"""The commands that type keys, and the keys as the editor of the tests names them."""
from desktop import wait_until

MENU = "menu"  # what the toolkit makes of the key
FREE_SLOTS = (2, 3, 4, 5, 6, 7, 10, 11, 13, 14, 15)

EDITING = {
    32: "Ctrl+Z", 33: "Ctrl+Shift+Z", 34: "Ctrl+X", 35: "Ctrl+C", 36: "Ctrl+V", 37: "Ctrl+Shift+V", 38: "Ctrl+A",
    39: "Ctrl+F", 40: "F3", 41: "Shift+F3", 42: "Ctrl+H", 43: "Ctrl+B", 44: "Ctrl+I", 45: "Ctrl+U", 46: "Ctrl+N",
    47: "Ctrl+O", 48: "Ctrl+S", 49: "Ctrl+Shift+S", 50: "Ctrl+P", 51: "Ctrl+Q"}
KEYS = {54: "Return", 55: "Esc", 56: "Tab", 57: "Del", 58: "Backspace", 59: MENU}
BROWSING = {
    110: "Alt+Left", 111: "Alt+Right", 112: "F5", 113: "Alt+Home", 114: "Ctrl+T", 115: "Ctrl+W", 116: "Ctrl+Shift+T",
    117: "Ctrl+PgDown", 118: "Ctrl+PgUp", 119: "Ctrl+L", 120: "Ctrl+D", 60: "PgUp", 61: "PgDown", 62: "Ctrl+Home",
    63: "Ctrl+End", 64: "Ctrl++", 65: "Ctrl+-", 66: "Ctrl+0", 77: "F11"}
# Without a player these keys come to whoever has the keyboard. Volume and the like would change the real one's.
MEDIA = {140: "Media Play", 141: "Media Stop", 142: "Media Next", 143: "Media Previous"}
# What desktops and not programs listen to. Volume and the like are keys under GNOME; elsewhere programs are asked.
OF_GNOME = {
    78: "Alt+Esc", 79: "Alt+Shift+Esc", 80: "Alt+F6", 81: "Meta+Left", 82: "Meta+Right", 83: "Alt+F7", 84: "Alt+F8",
    85: "Alt+Space", 100: "Meta+A", 101: "Alt+F2", 103: "Meta+V", 146: "Volume Up", 147: "Volume Down", 148: "Volume Mute",
    149: "Microphone Mute", 150: "Eject", 151: "Monitor Brightness Up", 152: "Monitor Brightness Down",
    153: "Keyboard Brightness Up", 154: "Keyboard Brightness Down", 155: "Shift+Print", 156: "Alt+SysReq", 157: "Print"}
OF_OTHERS = {
    78: "Alt+Tab", 79: "Alt+Shift+Backtab", 80: "Alt+F6", 81: "Meta+Left", 82: "Meta+Right", 83: "Alt+F7", 84: "Alt+F8",
    85: "Alt+Space", 100: "Alt+F1", 101: "Alt+F2", 202: "Meta+Alt+S"}


def batches(shortcuts):
    """The commands by slots, as many at a time as a trackball has room for."""
    codes = list(shortcuts)
    for first in range(0, len(codes), len(FREE_SLOTS)):
        yield dict(zip(FREE_SLOTS, codes[first:first + len(FREE_SLOTS)]))


def brings_a_key(desk, reader, slot):
    """Under Wayland a window may be told that it is in front before it gets the keys."""
    desk.click(slot)
    try:
        reader.lines.wait_for(lambda line: line.startswith("key") or line == MENU, "a key", seconds=2)
    except AssertionError:
        return False
    return True


def press_each(test, desk, reader, actions, shortcuts):
    wait_until(lambda: brings_a_key(desk, reader, next(iter(actions))), "the first key")
    for slot, code in actions.items():
        with test.subTest(command=code):
            name = shortcuts[code]
            wanted = {MENU} if name == MENU else {f"shortcut {name}"}
            if code in (64, 65, 66):  # a sign that is above another one on its key takes Shift as well
                wanted.add(f"shortcut {name.replace('Ctrl+', 'Ctrl+Shift+')}")
            desk.click(slot)
            reader.lines.wait_for(lambda line: line in wanted, f"command {code}")
    test.assertEqual(desk.problems(), [])
