#include "platform/workspace.h"

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <thread>

#include "platform/application_folder.h"
#include "platform/detached_program.h"
#include "platform/file_manager.h"
#include "util/path_text.h"
#include "util/system_error.h"

namespace veltrix {

namespace {

namespace fs = std::filesystem;

constexpr const char* kOpener = "xdg-open";  // knows what each desktop opens things with

Status openByDesktop(const std::string& what) {
  const std::string opener = programInPath(kOpener);
  if (opener.empty()) {
    return systemError(ENOENT, "cannot find", kOpener);
  }
  return startDetached({opener, what});
}

bool isLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

// Whether a scheme comes first; without one the text could be a file, or an option of the opener.
bool isUrl(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos || colon == 0 || !isLetter(text.front())) {
    return false;
  }
  for (const char character : text.substr(0, colon)) {
    const bool digit = character >= '0' && character <= '9';
    if (!isLetter(character) && !digit && std::string_view("+-.").find(character) == std::string_view::npos) {
      return false;
    }
  }
  return true;
}

void showOrOpenFolder(const std::string& path) {
  if (!showInFileManager(path)) {
    static_cast<void>(openByDesktop(fs::path(path).parent_path().string()));
  }
}

}  // namespace

Status launchApplication(const std::string& path) {
  return startDetached({programOfApplication(path)});
}

Status openFile(const std::string& path) {
  if (path.empty() || path.front() != '/') {
    return systemError(EINVAL, "cannot open", path);
  }
  std::error_code error;
  const fs::path plain = withoutFinalSlashes(path);
  if (!fs::exists(plain, error)) {
    return systemError(error ? error.value() : ENOENT, "cannot open", path);
  }
  const bool isApplication = plain.extension() == ".app" && fs::is_directory(plain, error);
  return isApplication ? launchApplication(plain.string()) : openByDesktop(plain.string());
}

Status openUrl(const std::string& url) {
  return isUrl(url) ? openByDesktop(url) : systemError(EINVAL, "cannot open", url);
}

Status selectFile(const std::string& path) {
  if (path.empty() || path.front() != '/') {
    return systemError(EINVAL, "cannot show", path);
  }
  try {
    std::thread(showOrOpenFolder, path).detach();
  } catch (const std::system_error& error) {
    return systemError(error.code().value(), "cannot show", path);
  }
  return Done();
}

}  // namespace veltrix
