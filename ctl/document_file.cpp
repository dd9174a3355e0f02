#include "ctl/document_file.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>

#include "ctl/outcome.h"
#include "platform/atomic_file.h"
#include "platform/bundle.h"
#include "settings/settings_merge.h"
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

// Null when the bundle has none.
plist::Dictionary readFactorySettings() {
  const auto document = plist::readFile(Bundle::standard().pathForResource("DefaultSettings", "plist"));
  return document ? document.value().root.asDictionary() : plist::Dictionary();
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

DocumentFile readCurrentSettings(const std::string& consequence) {
  const std::string path = settingsFilePath();
  const auto current = plist::readFile(path);
  if (path.empty() || current || current.error().code != ENOENT) {
    auto file = readSettings({});
    if (file.document && !isUsableDocument(file.root())) {
      file.document.reset();
      file.exitCode =
          fail(kBadInput,
               path + ": \"version\" must be above 1 and \"devices\" must not be empty; " + consequence);
    }
    if (file.document) {
      addFactorySettings(file.root());
    }
    return file;
  }
  const auto factory = readFactorySettings();
  if (!factory) {
    return {path, std::nullopt,
            fail(kNotFound, path + ": there are no settings and no factory settings to begin with")};
  }
  return {path, plist::Document{factory, plist::Format::kXml}, kDone};
}

void addFactorySettings(const plist::Dictionary& document) {
  if (const auto factory = readFactorySettings()) {
    mergeFactorySettings(document, factory);
  }
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
