#include "helper/desktop/item_path.h"

#include <sys/stat.h>

#include <cerrno>

#include "helper/desktop/one_line.h"
#include "platform/user_paths.h"
#include "util/path_text.h"
#include "util/phrase.h"
#include "util/system_error.h"

namespace veltrix {

Result<std::string> absoluteItem(const std::string& path) {
  if (path.empty()) {
    return Error{EINVAL, "no item is chosen", {}};
  }
  if (path.find('\0') != std::string::npos) {
    return systemError(EINVAL, "cannot open", oneLine(path));
  }
  const bool atHome = path == "~" || path.starts_with("~/");
  const std::string home = atHome ? homeDirectory() : "";
  if (atHome && home.empty()) {
    return phrasedError(ENOENT, {"there is no home folder for %1", {given(oneLine(path))}});
  }
  if (!atHome && path.front() != '/') {
    return phrasedError(EINVAL, {"cannot open %1: the path is not absolute", {given(oneLine(path))}});
  }
  return withoutFinalSlashes(atHome ? home + path.substr(1) : path);
}

Result<std::string> existingItem(const std::string& path) {
  Result<std::string> item = absoluteItem(path);
  struct stat attributes = {};
  if (item && stat(item.value().c_str(), &attributes) != 0) {
    return systemError(errno, "cannot open", oneLine(item.value()));
  }
  return item;
}

}  // namespace veltrix
