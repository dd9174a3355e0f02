#include "platform/resource_folder.h"

#include <cstdlib>
#include <filesystem>

namespace veltrix {

namespace {

namespace fs = std::filesystem;

bool isResourceFolder(const fs::path& folder) {
  std::error_code ignored;
  return fs::is_regular_file(folder / "Info.plist", ignored);
}

}  // namespace

std::string resourceFolderFor(const std::string& program, const std::string& fallback) {
  const fs::path folder = fs::path(program).parent_path();
  const fs::path candidate =
      folder.extension() == ".app" ? folder.parent_path() : folder.parent_path() / "lib" / "veltrix";
  return isResourceFolder(candidate) ? candidate.string() : fallback;
}

std::string standardResourceFolder() {
  const char* configured = std::getenv("VELTRIX_RESOURCES");
  if (configured != nullptr && configured[0] != '\0') {
    return configured;
  }
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  return resourceFolderFor(program.string(), VELTRIX_INSTALLED_RESOURCES);
}

}  // namespace veltrix
