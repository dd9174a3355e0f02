#include "ctl/driver_words.h"

#include <array>
#include <cstring>

namespace veltrix::ctl {
namespace {

struct Words {
  std::string_view code;
  std::string_view text;
};

constexpr std::array kStateWords = {
    Words{"connecting", "it has not answered yet"},
    Words{"no-outputs",
          "it runs, but has no virtual pointer and keyboard, so every trackball is an ordinary mouse; "
          "'journalctl -u veltrix-driver' says why"},
    Words{"not-installed", "it is not installed, so every trackball is an ordinary mouse"},
    Words{"not-running",
          "it is installed and does not run, so every trackball is an ordinary mouse; "
          "'systemctl status veltrix-driver' says why"},
    Words{"other-user", "it serves the user at the screen, which is not you"},
    Words{"replaced", "it works for another session of yours"},
    Words{"incompatible", "it does not understand the helper; install both in the same version"},
    Words{"unused", "it is not needed for simulated trackballs"},
};

constexpr std::array kConditionWords = {
    Words{"taken", "works by its record"},
    Words{"waiting", "waits until its buttons are up"},
    Words{"left-alone", "an ordinary mouse"},
    Words{"busy", "another program has taken it; the driver tries again"},
};

template <std::size_t size>
std::string wordsFor(const std::array<Words, size>& table, std::string_view code) {
  for (const Words& words : table) {
    if (words.code == code)
      return std::string(words.text);
  }
  return std::string(code);
}

}  // namespace

std::string driverText(std::string_view state, std::string_view version, int error) {
  if (state == "connected")
    return "works, version " + std::string(version);
  if (state == "unreachable")
    return std::string("it cannot be reached: ") + std::strerror(error);
  return wordsFor(kStateWords, state);
}

std::string driverConditionText(std::string_view condition, int error) {
  if (condition == "failed")
    return std::string("cannot be used: ") + std::strerror(error);
  return wordsFor(kConditionWords, condition);
}

}  // namespace veltrix::ctl
