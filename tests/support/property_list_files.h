#pragma once

#include <string>

#include "platform/property_list_io.h"
#include "tests/support/temporary_folder.h"

namespace veltrix::testing {

// Writes a document as XML, with the folders that it needs.
inline void writePlist(const std::string& path, const plist::Dictionary& document) {
  const auto xml = plist::writeXml(document);
  ASSERT_TRUE(xml.ok()) << path;
  writeFile(path, xml.value());
}

// The document of a file; null when it cannot be read.
inline plist::Dictionary readPlist(const std::string& path) {
  const auto document = plist::readFile(path);
  return document ? document.value().root.asDictionary() : plist::Dictionary();
}

}  // namespace veltrix::testing
