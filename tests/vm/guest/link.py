"""The helper's end of the connection to the driver, as bytes: what driverlink/packets.h lays down."""
import collections
import select
import socket
import struct
import time

SOCKET = "/run/veltrix/driver.sock"
VERSION = 2
APPLY, WITHDRAW, TYPE_KEYS, MOVE_POINTER, MONITOR, STOP_TYPING = 1, 2, 3, 4, 5, 6
STATUS, DEVICE_STATE, BUTTON, KEYS_TYPED, LAMPS = 0x81, 0x82, 0x83, 0x84, 0x85
CAPS_LOCK_LAMP, NUM_LOCK_LAMP = 1, 2
TYPED, STOPPED, NO_KEYBOARD = range(3)
ACCEPTED, NOT_THE_ACTIVE_USER, BROKEN_RULE, STOPPING, REPLACED = range(5)
DETACHED, LEFT_ALONE, WAITING, TAKEN, BUSY, FAILED = range(6)
MOST_KEY_STEPS = 64

Status = collections.namedtuple("Status", "answer outputs version")
DeviceState = collections.namedtuple("DeviceState", "vendor product productVersion number condition error")
Button = collections.namedtuple("Button", "vendor product productVersion number slot command pressed forHelper")
KeysTyped = collections.namedtuple("KeysTyped", "id count outcome")
Lamps = collections.namedtuple("Lamps", "lit")

ANSWERS = {
    STATUS: ("=HH24s", Status),
    DEVICE_STATE: ("=HHH2xIHH", DeviceState),
    BUTTON: ("=HHH2xIHHHH", Button),
    KEYS_TYPED: ("=IHH", KeysTyped),
    LAMPS: ("=H2x", Lamps),
}


def record(actions=None, speed=20, acceleration=255, axis_flags=0, invert_wheel=0, slow=0, single=0, inertia=0,
           enabled=1):
    """A driver's record; `actions` maps slots to commands or to (command, modifiers, argument)."""
    actions = {0: 1, 12: (20, 0, 3)} if actions is None else actions
    result = struct.pack("=9B7x", enabled, speed, acceleration, axis_flags, invert_wheel, slow, single, 16, inertia)
    for slot in range(16):
        action = actions.get(slot, 0)
        command, modifiers, argument = action if isinstance(action, tuple) else (action, 0, 0)
        result += struct.pack("=HHH4x", command, modifiers, argument & 0xFFFF)
    return result


class Link:
    """One connection. What comes in is kept until somebody waits for it."""

    def __init__(self, path=SOCKET):
        self.socket = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        self.socket.connect(path)
        self.received = []
        self.ended = False

    def send(self, kind, body=b"", version=VERSION):
        self.socket.send(struct.pack("=HH", version, kind) + body)

    def apply(self, record, product=0x2041, version=0x0107, scroll=(0, 0, 0, 0, 0), vendor=0xA1D0):
        self.send(APPLY, struct.pack("=HHH2x", vendor, product, version) + record + struct.pack("=5i", *scroll))

    def withdraw(self, product=0x2041, version=0x0107, vendor=0xA1D0):
        self.send(WITHDRAW, struct.pack("=HHH2x", vendor, product, version))

    def type_keys(self, identity, steps, interval=1, stoppable=False):
        """Steps are (code, whether down)."""
        body = struct.pack("=IBBH", identity, len(steps), stoppable, interval)
        body += b"".join(struct.pack("=HH", code, down) for code, down in steps)
        self.send(TYPE_KEYS, body.ljust(8 + MOST_KEY_STEPS * 4, b"\0"))

    def stop_typing(self):
        self.send(STOP_TYPING)

    def expect_typed(self, identity):
        return self.expect(lambda each: isinstance(each, KeysTyped) and each.id == identity, f"typed {identity}")

    def move_pointer(self, dx, dy):
        self.send(MOVE_POINTER, struct.pack("=ii", dx, dy))

    def monitor(self, wanted):
        self.send(MONITOR, struct.pack("=I", wanted))

    def take(self, seconds=0.0):
        """Reads what is there, or comes in that time; whether there was anything."""
        if self.ended or not select.select([self.socket], [], [], seconds)[0]:
            return False
        try:
            message = self.socket.recv(4096)
        except ConnectionResetError:
            message = b""
        if not message:
            self.ended = True
            return False
        version, kind = struct.unpack_from("=HH", message)
        form, meaning = ANSWERS[kind]
        if version != VERSION or len(message) != 4 + struct.calcsize(form):
            raise AssertionError(f"the driver sent {message.hex()}")
        self.received.append(meaning(*struct.unpack_from(form, message, 4)))
        return True

    def expect(self, condition, what, seconds=10):
        """The first answer that meets the condition; it and all before it are forgotten."""
        end = time.monotonic() + seconds
        seen = []
        while True:
            while self.received:
                answer = self.received.pop(0)
                seen.append(answer)
                if condition(answer):
                    return answer
            if not self.take(max(0, end - time.monotonic())) and (self.ended or time.monotonic() > end):
                raise AssertionError(f"in vain for {what}; ended: {self.ended}; came: {seen}")

    def expect_status(self, answer):
        return self.expect(lambda each: isinstance(each, Status) and each.answer == answer, f"status {answer}")

    def expect_condition(self, condition, seconds=10, **fields):
        """A trackball in that condition, and with those values of other fields of DeviceState."""
        wanted = {"condition": condition, **fields}
        return self.expect(lambda each: isinstance(each, DeviceState) and
                           all(getattr(each, name) == value for name, value in wanted.items()),
                           f"condition {condition} {fields}", seconds)

    def expect_end(self, seconds=10):
        end = time.monotonic() + seconds
        while not self.ended:
            self.take(0.1)
            if time.monotonic() > end:
                raise AssertionError("the driver keeps the connection")

    def close(self):
        self.socket.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()
