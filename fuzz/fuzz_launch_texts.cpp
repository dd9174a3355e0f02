#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "helper/desktop/desktop_settings.h"
#include "helper/desktop/mime_applications.h"
#include "helper/desktop/one_line.h"
#include "helper/desktop/script_interpreter.h"
#include "helper/desktop/url_check.h"
#include "helper/desktop/user_folders.h"

namespace {

void require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

bool isLine(const std::string& text) {
  return text.find('\n') == std::string::npos && text.find('\x1B') == std::string::npos;
}

// No address that is taken can be an option, a path, or two arguments.
void checkAddress(std::string_view text) {
  const veltrix::Status status = veltrix::checkUrl(text);
  if (!status) {
    require(isLine(status.error().message));
    return;
  }
  require(((static_cast<unsigned char>(text.front()) | 0x20U) - 'a') < 26U);
  require(text.find_first_of(std::string_view(" \t\n\r\0", 5)) == std::string_view::npos);
  require(text.find(':') != std::string_view::npos && text.size() <= veltrix::kLongestUrl);
}

// An interpreter is a path and at most one argument, all of them from the first line.
void checkInterpreter(std::string_view text) {
  const auto interpreter = veltrix::interpreterOf(text);
  if (!interpreter) {
    require(isLine(interpreter.error().message));
    return;
  }
  const auto& arguments = interpreter.value();
  require(!arguments.empty() && arguments.size() <= 2 && arguments.front().starts_with('/'));
  for (const std::string& argument : arguments) {
    require(argument.find('\n') == std::string::npos && argument.find('\0') == std::string::npos);
  }
}

void checkFolders(std::string_view text) {
  for (const char* subject : {"DOCUMENTS", "DOWNLOAD"}) {
    const std::string folder = veltrix::readUserFolder(text, subject, "/home/anna");
    require(folder.empty() || folder.front() == '/');
    require(folder.find('\0') == std::string::npos);
  }
}

void checkChoices(std::string_view text) {
  const veltrix::MimeChoices choices = veltrix::readMimeChoices(text, "inode/directory");
  for (const auto* list : {&choices.defaults, &choices.added, &choices.removed, &choices.cached}) {
    for (const std::string& file : *list) {
      require(!file.empty());
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  checkAddress(text);
  checkInterpreter(text);
  checkFolders(text);
  checkChoices(text);
  require(isLine(veltrix::oneLine(text)));
  for (const double step : {0.0, 1.0, -0.5}) {
    const auto next = veltrix::nextSettingValue(text, {"schema", "key", step, -1, 20});
    require(!next || (!next->empty() && isLine(*next)));
  }
  return 0;
}
