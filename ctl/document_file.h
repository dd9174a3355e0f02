#pragma once

#include <optional>
#include <string>

#include "platform/property_list.h"
#include "platform/property_list_io.h"

namespace veltrix::ctl {

// A property list that a command works on. When `document` is empty, the reason has been said on standard
// error and `exitCode` is the one to end with.
struct DocumentFile {
  std::string path;
  std::optional<plist::Document> document;
  int exitCode = 0;

  plist::Dictionary root() const { return document ? document->root.asDictionary() : plist::Dictionary(); }
};

// Reads a property list of any form and any root.
DocumentFile readDocument(const std::string& path);

// Reads a settings document, whose root is a dictionary: `path`, or the user's file when it is empty.
DocumentFile readSettings(const std::string& path);

// The document that every program works on: the user's file with what only the factory settings have, or the
// factory settings while there is no file. Writes nothing. `consequence` ends the message when there is none,
// as in "nothing was changed".
DocumentFile readCurrentSettings(const std::string& consequence);

// Adds to `document` what only the bundle's factory settings have.
void addFactorySettings(const plist::Dictionary& document);

// Writes `bytes` and returns the exit code; says what is wrong.
int writeOutput(const std::string& path, const Result<std::string>& bytes);

}  // namespace veltrix::ctl
