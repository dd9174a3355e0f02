#pragma once

#include <string>

#include "platform/property_list.h"
#include "util/result.h"

namespace veltrix {

enum class SettingsInForce { kNone, kFactory, kUser };

// The device entries and snippets that the helper works by. Only reads files, and reads them leniently.
class HelperSettings {
 public:
  HelperSettings(std::string userPath, std::string factoryPath)
      : fUserPath(std::move(userPath)), fFactoryPath(std::move(factoryPath)) {}

  // Reads the user's file again. Without one the factory settings come into force; one that cannot be read
  // leaves in force what was, and at the first reading brings the factory settings into force.
  void reread();

  const plist::Array& entries() const { return fContents.entries; }
  const plist::Array& snippets() const { return fContents.snippets; }  // of the same file; null without any
  SettingsInForce inForce() const { return fInForce; }
  const std::string& userPath() const { return fUserPath; }
  // Why the last reading found nothing usable, one line with the path; empty when it did.
  const std::string& error() const { return fError; }

 private:
  struct Contents {
    plist::Array entries;
    plist::Array snippets;
  };
  static Result<Contents> contentsOf(const std::string& path);
  void useFactorySettings();

  std::string fUserPath;
  std::string fFactoryPath;
  Contents fContents;
  SettingsInForce fInForce = SettingsInForce::kNone;
  std::string fError;
};

}  // namespace veltrix
