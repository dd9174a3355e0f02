#include "driver/output_devices.h"

#include <fcntl.h>
#include <libevdev/libevdev-uinput.h>
#include <libevdev/libevdev.h>

#include <cstdio>
#include <cstring>
#include <utility>

#include "driver/engine/engine_types.h"
#include "driver/output_identity.h"

namespace veltrix {

namespace {

constexpr unsigned kLastKey = 247;

struct DescriptionReleaser {
  void operator()(libevdev* description) const { libevdev_free(description); }
};
using Description = std::unique_ptr<libevdev, DescriptionReleaser>;

Description describe(const char* name, std::uint16_t product) noexcept {
  Description description(libevdev_new());
  if (description == nullptr)
    return description;
  libevdev_set_name(description.get(), name);
  libevdev_set_id_bustype(description.get(), BUS_VIRTUAL);
  libevdev_set_id_vendor(description.get(), kTrackballVendor);
  libevdev_set_id_product(description.get(), product);
  libevdev_set_id_version(description.get(), 1);
  return description;
}

void enable(libevdev* description, unsigned type, unsigned first, unsigned last) noexcept {
  for (unsigned code = first; code <= last; ++code)
    libevdev_enable_event_code(description, type, code, nullptr);
}

Description describePointer() noexcept {
  Description pointer = describe(kPointerName, kPointerProduct);
  if (pointer == nullptr)
    return pointer;
  enable(pointer.get(), EV_KEY, BTN_MOUSE, BTN_MOUSE + kMostButtons - 1);
  for (const unsigned code : {REL_X, REL_Y, REL_WHEEL, REL_HWHEEL, REL_WHEEL_HI_RES, REL_HWHEEL_HI_RES})
    libevdev_enable_event_code(pointer.get(), EV_REL, code, nullptr);
  return pointer;
}

// Held keys repeat on the console as those of other keyboards do; desktops repeat by themselves. The lamps
// are those that tell how letters and the keypad are read.
Description describeKeyboard() noexcept {
  Description keyboard = describe(kKeyboardName, kKeyboardProduct);
  if (keyboard == nullptr)
    return keyboard;
  enable(keyboard.get(), EV_KEY, 1, kLastKey);
  libevdev_enable_event_type(keyboard.get(), EV_REP);
  for (const unsigned code : {LED_NUML, LED_CAPSL})
    libevdev_enable_event_code(keyboard.get(), EV_LED, code, nullptr);
  return keyboard;
}

// Returns 0 or an errno value.
int make(const Description& description, libevdev_uinput** device) noexcept {
  if (description == nullptr)
    return ENOMEM;
  return -libevdev_uinput_create_from_device(description.get(), LIBEVDEV_UINPUT_OPEN_MANAGED, device);
}

// What comes back from the kernel is read when it is there and never waited for.
bool neverWaits(int descriptor) noexcept {
  const int flags = fcntl(descriptor, F_GETFL);
  return flags >= 0 && fcntl(descriptor, F_SETFL, flags | O_NONBLOCK) == 0;
}

}  // namespace

void UinputReleaser::operator()(libevdev_uinput* device) const {
  libevdev_uinput_destroy(device);
}

int OutputDevices::open() noexcept {
  if (isOpen())
    return 0;
  libevdev_uinput* keyboard = nullptr;
  libevdev_uinput* pointer = nullptr;
  int error = make(describeKeyboard(), &keyboard);
  Handle newKeyboard(keyboard);
  if (error == 0)
    error = make(describePointer(), &pointer);
  if (error != 0) {
    std::fprintf(stderr, "cannot make a virtual pointer and keyboard: %s; trackballs are left alone\n",
                 std::strerror(error));
    return error;
  }
  fKeyboard = std::move(newKeyboard);
  fPointer.reset(pointer);
  fWriter = GroupWriter(libevdev_uinput_get_fd(keyboard), libevdev_uinput_get_fd(pointer));
  if (const int lamps = libevdev_uinput_get_fd(keyboard); neverWaits(lamps))
    fLamps.open(lamps);
  return 0;
}

void OutputDevices::close() noexcept {
  fLamps.close();
  fPointer.reset();
  fKeyboard.reset();
}

}  // namespace veltrix
