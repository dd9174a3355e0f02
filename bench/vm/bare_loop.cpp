// The least that a program between a trackball and the desktop can do: reads events and writes them out
// again.
//
// usage: bare_loop NODE NAME
//
// Takes the event node exclusively and gives everything out through a virtual pointer of that name. Ends with
// the device.
#include <fcntl.h>
#include <linux/uinput.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdio>

#include "util/file_descriptor.h"

namespace {

int fail(const char* what) {
  std::perror(what);
  return 1;
}

bool makePointer(int file, const char* name) {
  bool works = true;
  for (const int type : {EV_KEY, EV_REL}) works = works && ioctl(file, UI_SET_EVBIT, type) == 0;
  for (int button = BTN_LEFT; button < BTN_LEFT + 16; ++button)
    works = works && ioctl(file, UI_SET_KEYBIT, button) == 0;
  for (const int axis : {REL_X, REL_Y, REL_WHEEL, REL_HWHEEL, REL_WHEEL_HI_RES, REL_HWHEEL_HI_RES})
    works = works && ioctl(file, UI_SET_RELBIT, axis) == 0;
  uinput_setup setup{};
  setup.id.bustype = BUS_VIRTUAL;
  std::snprintf(setup.name, sizeof setup.name, "%s", name);
  return works && ioctl(file, UI_DEV_SETUP, &setup) == 0 && ioctl(file, UI_DEV_CREATE) == 0;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 3) {
    std::fprintf(stderr, "usage: bare_loop NODE NAME\n");
    return 2;
  }
  const veltrix::FileDescriptor input(open(arguments[1], O_RDONLY | O_CLOEXEC));
  const veltrix::FileDescriptor output(open("/dev/uinput", O_WRONLY | O_CLOEXEC));
  if (!input || ioctl(input.get(), EVIOCGRAB, 1) < 0)
    return fail(arguments[1]);
  if (!output || !makePointer(output.get(), arguments[2]))
    return fail("/dev/uinput");
  std::array<input_event, 64> events{};
  for (;;) {
    const ssize_t size = read(input.get(), events.data(), sizeof events);
    if (size <= 0)
      return 0;
    if (write(output.get(), events.data(), static_cast<std::size_t>(size)) != size)
      return fail("/dev/uinput");
  }
}
