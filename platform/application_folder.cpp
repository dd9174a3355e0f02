#include "platform/application_folder.h"

#include <filesystem>
#include <system_error>

#include "util/path_text.h"

namespace veltrix {

namespace {

constexpr std::string_view kSuffix = ".app";

}  // namespace

std::string_view withoutApplicationSuffix(std::string_view name) {
  return name.ends_with(kSuffix) ? name.substr(0, name.size() - kSuffix.size()) : name;
}

std::string applicationName(std::string_view application) {
  const std::string path = withoutFinalSlashes(application);
  return std::string(withoutApplicationSuffix(std::string_view(path).substr(path.rfind('/') + 1)));
}

std::string programOfApplication(std::string_view application) {
  return withoutFinalSlashes(application) + "/" + applicationName(application);
}

std::string packagedApplication(const std::string& path, const std::string& resourceFolder) {
  const std::string plain = withoutFinalSlashes(path);
  const std::string packaged = resourceFolder + "/" + plain.substr(plain.rfind('/') + 1);
  std::error_code ignored;
  return plain.ends_with(kSuffix) && std::filesystem::is_directory(packaged, ignored) ? packaged : path;
}

std::optional<std::string> applicationOfProgram(std::string_view program) {
  if (!program.starts_with('/')) {
    return {};
  }
  for (std::string_view path = program; path.size() > 1;) {
    path = path.substr(0, path.rfind('/'));
    if (path.ends_with(kSuffix)) {
      return std::string(path);
    }
  }
  return {};
}

}  // namespace veltrix
