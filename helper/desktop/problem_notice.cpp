#include "helper/desktop/problem_notice.h"

#include <systemd/sd-bus.h>

namespace veltrix {

namespace {

constexpr const char* kName = "org.freedesktop.Notifications";
constexpr const char* kPath = "/org/freedesktop/Notifications";
constexpr const char* kApplication = "Veltrix";
constexpr const char* kIcon = "com.aldmoor.veltrix";
constexpr std::int32_t kUsualTime = -1;  // as long as the desktop shows any
constexpr std::chrono::milliseconds kPatience{2000};
constexpr std::size_t kMostUnanswered = 4;  // of a desktop that hangs

// Some desktops understand markup in the text, and all of them character references then.
std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '&')
      result += "&amp;";
    else if (c == '<')
      result += "&lt;";
    else
      result += c;
  }
  return result;
}

}  // namespace

void ProblemNotice::show(const std::string& title, const std::string& text) {
  if (fCalls.size() >= kMostUnanswered)
    return;
  sd_bus_message* message = nullptr;
  int result = sd_bus_message_new_method_call(fBus, &message, kName, kPath, kName, "Notify");
  const BusMessageHandle owner(message);
  if (result >= 0)
    result = sd_bus_message_set_auto_start(message, 0);
  if (result >= 0)
    result = sd_bus_message_append(message, "susssasa{sv}i", kApplication, fShown, kIcon, title.c_str(),
                                   escaped(text).c_str(), 0, 0, kUsualTime);
  if (result < 0)
    return;
  fCalls.send(fBus, message, kPatience, [this](sd_bus_message* reply, const Status& status) {
    if (!status || reply == nullptr || sd_bus_message_read(reply, "u", &fShown) < 0)
      fShown = 0;
  });
}

}  // namespace veltrix
