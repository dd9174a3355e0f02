#pragma once

#include <chrono>
#include <string>

#include "helperlink/device_list.h"
#include "platform/os_release.h"
#include "platform/property_list.h"
#include "util/result.h"

namespace veltrix {

// What a report to the people who support the product is made of, besides the settings.
struct SupportFacts {
  std::chrono::system_clock::time_point now;
  plist::Value bundleVersion;  // CFBundleVersion of the bundle; may be missing
  OsRelease release;
  const VeltrixDeviceList* devices = nullptr;  // the connected trackballs; null for none
};

// The report on the system. Its keys are filled in their order, and a missing bundle version ends it: the
// rest would be taken for a report of some other program.
plist::Dictionary makeSupportInformation(const SupportFacts& facts);

// `document` with the report under "support", as XML. The document then has no such key, whatever it had.
Result<std::string> supportInformationXml(plist::Dictionary document, const SupportFacts& facts);

// The same into the file at `path`, which is replaced as one step.
Status writeSupportInformation(const std::string& path, plist::Dictionary document,
                               const SupportFacts& facts);

// Where the pane puts it in the home folder.
std::string supportInformationPath(const std::string& home);

}  // namespace veltrix
