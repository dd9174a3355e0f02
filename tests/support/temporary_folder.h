#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <string_view>

namespace veltrix::testing {

// A fresh folder that disappears with everything in it at the end of the scope.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    fPath = (std::filesystem::temp_directory_path() / "veltrix-test-XXXXXX").string();
    if (mkdtemp(fPath.data()) == nullptr) {
      ADD_FAILURE() << "no temporary folder: " << fPath;
    }
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(fPath, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::string& path() const { return fPath; }
  std::string operator/(std::string_view name) const { return fPath + "/" + std::string(name); }

 private:
  std::string fPath;
};

// Writes a file and the folders that it needs.
inline void writeFile(const std::string& path, std::string_view text) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << text;
}

// The bytes of a file; "(none)" when it cannot be read.
inline std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    return "(none)";
  }
  return {std::istreambuf_iterator<char>(file), {}};
}

// The names of what lies in a folder.
inline std::set<std::string> namesIn(const std::string& folder) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.insert(entry.path().filename().string());
  }
  return names;
}

}  // namespace veltrix::testing
