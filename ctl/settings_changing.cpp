#include <memory>

#include "ctl/device_selector.h"
#include "ctl/outcome.h"
#include "ctl/settings_commands.h"
#include "ctl/settings_path.h"
#include "ctl/terminal_store.h"
#include "ctl/value_text.h"
#include "settings/settings_schema.h"

namespace veltrix::ctl {
namespace {

// The type that the new value must have: the one that readers expect, else the one that is there.
plist::Type typeAt(const SettingsPlace& place) {
  const auto known = settingsTypeOf(place.key);
  return known != plist::Type::kMissing ? known : place.value.type();
}

int set(const std::string& key, const std::string& text) {
  TerminalStore store;
  if (const int problem = store.open(); problem != kDone) {
    return problem;
  }
  const std::string unchanged = "; nothing was changed";
  auto place = findPlace(store.document(), key);
  if (!place) {
    return fail(place.error().code, store.path() + ": " + place.error().message + unchanged);
  }
  const std::string where = store.path() + ": " + place.value().path + ": ";
  const auto type = typeAt(place.value());
  if (type == plist::Type::kMissing || !place.value().parent) {
    return fail(kNotFound, where + "there is no such setting" + unchanged);
  }
  const auto value = parseValue(text, type);
  if (!value) {
    return fail(value.error().code, where + value.error().message + unchanged);
  }
  place.value().parent.set(place.value().key, value.value());
  return store.saveIfAllowed();
}

int reset(const std::string& device) {
  TerminalStore store;
  if (const int problem = store.open(); problem != kDone) {
    return problem;
  }
  const auto index = selectDevice(store.vtxGetSettingsArray(), device);
  if (!index) {
    return fail(index.error().code, store.path() + ": " + index.error().message + "; nothing was changed");
  }
  if (!store.restoreDefaultEntry(static_cast<std::int32_t>(index.value()))) {
    return fail(kNotFound, "the factory settings have no entry for devices/" + std::to_string(index.value()) +
                               "; nothing was changed");
  }
  return store.saveError() ? store.reportSaveError() : kDone;
}

}  // namespace

void addSettingsChangingCommands(CommandLine settings, Context& context) {
  auto setting = settings.addCommand("set", "Change one value; the helper is told at once");
  auto key = std::make_shared<std::string>();
  auto value = std::make_shared<std::string>();
  setting.addOption("KEY", *key, "A place as for \"get\"").required();
  setting.addOption("VALUE", *value, "The new value, of the same type; integers may be hexadecimal (0x0900)")
      .required();
  setting.does([&context, key, value] { context.exitCode = set(*key, *value); });

  auto resetting = settings.addCommand("reset", "Restore the factory settings of one device");
  auto device = std::make_shared<std::string>();
  resetting
      .addOption("DEVICE", *device,
                 "Index, product (1020), product and version (2041:0107) or name (skiffline)")
      .required();
  resetting.does([&context, device] { context.exitCode = reset(*device); });
}

}  // namespace veltrix::ctl
