#include "ctl/document_file.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>

#include "ctl/outcome.h"
#include "platform/atomic_file.h"
#include "settings/settings_store.h"

namespace veltrix::ctl {
namespace {

// Where in the file an offset lies, said so that an editor finds it. Lines mean nothing in binary files and
// in UTF-16 ones, both of which have zero bytes before long.
std::string placeOf(const std::string& path, std::size_t offset) {
  std::ifstream file(path, std::ios::binary);
  std::string before(offset, '\0');
  file.read(before.data(), static_cast<std::streamsize>(offset));
  before.resize(static_cast<std::size_t>(file.gcount()));
  const bool isText = !before.starts_with("bplist") && before.find('\0') == std::string::npos;
  std::string byte = "offset " + std::to_string(offset);
  if (!isText) {
    return byte;
  }
  return "line " + std::to_string(1 + std::count(before.begin(), before.end(), '\n')) + " (" + byte + ")";
}

}  // namespace

DocumentFile readDocument(const std::string& path) {
  auto document = plist::readFile(path);
  if (document) {
    return {path, std::move(document.value()), kDone};
  }
  const Error& error = document.error();
  if (!error.offset) {
    return {path, std::nullopt, fail(error.code == ENOENT ? kNotFound : kBadInput, error.message)};
  }
  const std::string message = path + ": " + placeOf(path, *error.offset) + ": " + error.message;
  return {path, std::nullopt, fail(kBadInput, message)};
}

DocumentFile readSettings(const std::string& path) {
  const std::string chosen = path.empty() ? settingsFilePath() : path;
  if (chosen.empty()) {
    return {chosen, std::nullopt, fail(kNotFound, "there is no home folder to look for the settings in")};
  }
  auto file = readDocument(chosen);
  if (file.document && !file.root()) {
    file.document.reset();
    file.exitCode = fail(kBadInput, chosen + ": is a property list, but its root is no dictionary");
  }
  return file;
}

int writeOutput(const std::string& path, const Result<std::string>& bytes) {
  if (!bytes) {
    return fail(kBadInput, about(path, bytes.error().message) + "; nothing was written");
  }
  if (const Status written = writeFileAtomically(path, bytes.value()); !written) {
    return fail(kNotFound, about(path, written.error().message) + "; nothing was written");
  }
  return kDone;
}

}  // namespace veltrix::ctl
