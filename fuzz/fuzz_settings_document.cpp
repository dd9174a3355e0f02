#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "platform/property_list_io.h"
#include "settings/deep_copy.h"
#include "settings/document_check.h"
#include "settings/driver_record.h"
#include "settings/entry_lookup.h"
#include "settings/settings_merge.h"
#include "settings/settings_rules.h"

// Whatever a settings file holds: it is merged, searched, checked and turned into records as programs do it,
// and the promises of each step are held against the result.
namespace {

using veltrix::plist::Array;
using veltrix::plist::Dictionary;

void require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

// The document over itself and a copy: nothing of it may go, and once is enough.
void checkMerge(const Dictionary& document) {
  const auto user = veltrix::mutableDeepAutoreleasedCopy(document);
  const auto factory = veltrix::mutableDeepAutoreleasedCopy(document);
  require(user && factory);
  const std::size_t count = user.arrayFor("devices").count();
  if (user.arrayFor("devices").count() == 0) {
    return;
  }
  veltrix::mergeFactorySettings(user, factory);
  require(user.arrayFor("devices").count() == count);
  const auto once = veltrix::mutableDeepAutoreleasedCopy(user);
  veltrix::mergeFactorySettings(user, veltrix::mutableDeepAutoreleasedCopy(document));
  require(veltrix::plist::equal(once, user));
}

void checkEntry(const Dictionary& entry, const Dictionary& fallback) {
  VeltrixValidateSettings(entry);
  VeltrixSettingsAreGlobal(entry);
  const auto click = VeltrixFindClickInSettings(entry, 0, 3, -1);
  require(click >= -1 && click <= 3);
  veltrix::DriverRecord first;
  veltrix::DriverRecord second;
  std::memset(&first, 0, sizeof first);
  std::memset(&second, 0xFF, sizeof second);
  const bool built = VeltrixAppPrefsDictToStruct(entry, fallback, &first);
  require(VeltrixAppPrefsDictToStruct(entry, fallback, &second) == built);
  if (entry || fallback) {
    require(std::memcmp(&first, &second, sizeof first) == 0);
    require(first.actionCount <= veltrix::kRecordActions && (first.axisFlags & 0xF0U) == 0);
  }
}

void checkLookups(const Array& devices) {
  std::int32_t best = 0;
  std::int32_t global = 0;
  const auto count = static_cast<std::int32_t>(devices.count());
  VeltrixMatchAppPrefs(devices, nullptr, nullptr, 0xA1D0, 0x2041, 0x0107, &best, &global);
  require(best >= -1 && best < count && global >= -1 && global < count);
  VeltrixDeviceList connected{};
  connected.count = 1;
  connected.device[0].productID = 0x2041;
  connected.device[0].productVers = 0x0107;
  const auto found = veltrix::findEntryForDevices(devices, &connected, 0);
  require(found.index >= 0 && (!found.found || found.index < count));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto file = veltrix::plist::read({reinterpret_cast<const char*>(data), size});
  const auto document = file ? file.value().root.asDictionary() : Dictionary();
  if (!document) {
    return 0;
  }
  veltrix::checkSettingsDocument(document);
  checkMerge(document);
  const auto devices = document.arrayFor("devices");
  checkLookups(devices);
  Dictionary previous;
  for (const auto& element : devices.items()) {
    checkEntry(element.asDictionary(), previous);
    previous = element.asDictionary();
  }
  return 0;
}
