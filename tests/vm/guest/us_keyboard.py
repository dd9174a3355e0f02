"""What keys type under the us layout, worked out from event codes alone."""
import evdev

KEY_LEFTSHIFT, KEY_RIGHTSHIFT, KEY_SPACE, KEY_102ND = 42, 54, 57, 86

# The first code of neighbouring keys, and what they type without and with Shift.
ROWS = [(2, "1234567890-=", "!@#$%^&*()_+"), (15, "\tqwertyuiop[]\n", " QWERTYUIOP{} "),
        (30, "asdfghjkl;'`", 'ASDFGHJKL:"~'), (43, "\\zxcvbnm,./", "|ZXCVBNM<>?"), (KEY_SPACE, " ", " "),
        (KEY_102ND, "<", ">")]
NO_CHARACTER = {(15, True), (28, True)}


def _characters():
    found = {}
    for first, plain, shifted in ROWS:
        for code, characters in enumerate(zip(plain, shifted), first):
            found.update({(code, bool(shift)): character for shift, character in enumerate(characters)
                          if (code, bool(shift)) not in NO_CHARACTER})
    return found


class TypedText:
    """Follows the keys of an event node and says which text they type."""
    CHARACTERS = _characters()

    def __init__(self, reader):
        self._reader = reader
        self.text = ""
        self.held = set()
        self.has_caps_lock = False  # on

    def follow(self, seconds):
        """Takes what comes until nothing has come for so long; returns the text so far."""
        while events := self._reader.read(1, seconds):
            for event in events:
                self._take(*event)
        return self.text

    def wait_for(self, length, seconds=60):
        """Takes what comes until the text has so many characters and all keys are up again; returns the text."""
        while len(self.text) < length or self.held:
            events = self._reader.read(1, seconds)
            if not events:
                raise AssertionError(f"nothing more came after {self.text!r} with {self.held} down")
            for event in events:
                self._take(*event)
        return self.text

    def _take(self, kind, code, value):
        if kind != evdev.EV_KEY:
            raise AssertionError(f"{(kind, code, value)} after {self.text!r} is no key; events were lost")
        if (code in self.held) == bool(value):
            raise AssertionError(f"key {code} is {value} twice after {self.text!r}")
        if not value:
            self.held.remove(code)
            return
        if code not in (KEY_LEFTSHIFT, KEY_RIGHTSHIFT):
            shift = bool(self.held & {KEY_LEFTSHIFT, KEY_RIGHTSHIFT})
            if (code, shift) not in self.CHARACTERS:
                raise AssertionError(f"key {code} with {self.held} types nothing after {self.text!r}")
            character = self.CHARACTERS[code, shift]
            self.text += character.swapcase() if self.has_caps_lock else character
        self.held.add(code)
