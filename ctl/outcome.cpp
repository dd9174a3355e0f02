#include "ctl/outcome.h"

#include <iostream>

namespace veltrix::ctl {

void note(const std::string& message) {
  std::cout.flush();
  std::cerr << "veltrixctl: " << message << '\n';
}

int fail(int code, const std::string& message) {
  note(message);
  return code;
}

std::string about(const std::string& path, const std::string& message) {
  return message.find(path) == std::string::npos ? path + ": " + message : message;
}

}  // namespace veltrix::ctl
