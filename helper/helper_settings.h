#pragma once

#include <string>

#include "platform/property_list.h"

namespace veltrix {

enum class SettingsInForce { kNone, kFactory, kUser };

// The device entries that the helper works by. Only reads files, and reads them leniently.
class HelperSettings {
 public:
  HelperSettings(std::string userPath, std::string factoryPath)
      : fUserPath(std::move(userPath)), fFactoryPath(std::move(factoryPath)) {}

  // Reads the user's file again. Without one the factory settings come into force; one that cannot be read
  // leaves in force what was, and at the first reading brings the factory settings into force.
  void reread();

  const plist::Array& entries() const { return fEntries; }
  SettingsInForce inForce() const { return fInForce; }
  const std::string& userPath() const { return fUserPath; }
  // Why the last reading found nothing usable, one line with the path; empty when it did.
  const std::string& error() const { return fError; }

 private:
  void useFactorySettings();

  std::string fUserPath;
  std::string fFactoryPath;
  plist::Array fEntries;
  SettingsInForce fInForce = SettingsInForce::kNone;
  std::string fError;
};

}  // namespace veltrix
