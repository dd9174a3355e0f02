#include <iostream>
#include <memory>

#include "ctl/device_selector.h"
#include "ctl/document_file.h"
#include "ctl/outcome.h"
#include "ctl/plist_json.h"
#include "ctl/settings_commands.h"
#include "ctl/settings_path.h"
#include "ctl/value_text.h"
#include "settings/settings_keys.h"
#include "settings/settings_store.h"

namespace veltrix::ctl {
namespace {

int path(const Context& context) {
  const auto path = settingsFilePath();
  if (path.empty()) {
    return fail(kNotFound, "there is no home folder to keep the settings in");
  }
  std::cout << (context.json ? jsonText(path) : path + "\n");
  return kDone;
}

// Every value on a line, with a heading above each entry.
std::string listing(const plist::Dictionary& document) {
  std::string text;
  for (const auto& key : document.keys()) {
    const auto devices = document.arrayFor(key);
    if (key != keys::kDevices || !devices) {
      text += valueLines(document.get(key), key);
      continue;
    }
    for (std::size_t i = 0; i < devices.count(); ++i) {
      const std::string place = key + "/" + std::to_string(i);
      const auto entry = devices.at(i).asDictionary();
      text += "# " + place + ": " + (entry ? entryTitle(entry) : "no entry") + "\n";
      text += valueLines(devices.at(i), place);
    }
  }
  return text;
}

int show(const std::string& name, const Context& context) {
  const auto file = readSettings(name);
  if (!file.document) {
    return file.exitCode;
  }
  std::cout << (context.json ? jsonText(jsonOf(file.document->root)) : listing(file.root()));
  return kDone;
}

int get(const std::string& key, const Context& context) {
  const auto file = readSettings({});
  if (!file.document) {
    return file.exitCode;
  }
  const auto place = findPlace(file.root(), key);
  if (!place) {
    return fail(place.error().code, file.path + ": " + place.error().message);
  }
  const auto& value = place.value().value;
  if (value.isMissing()) {
    return fail(kNotFound, file.path + ": there is no \"" + place.value().path + "\"");
  }
  const bool isContainer = value.asDictionary() || value.asArray();
  if (context.json) {
    std::cout << jsonText(jsonOf(value));
  } else {
    std::cout << (isContainer ? valueLines(value, place.value().path) : valueText(value) + "\n");
  }
  return kDone;
}

}  // namespace

void addSettingsReadingCommands(CommandLine settings, Context& context) {
  settings.addCommand("path", "Print where the settings file is").does([&context] {
    context.exitCode = path(context);
  });

  auto showing = settings.addCommand("show", "Print a settings file, one value on a line");
  auto file = std::make_shared<std::string>();
  showing.addOption("FILE", *file, "A settings file; the user's own by default");
  showing.does([&context, file] { context.exitCode = show(*file, context); });

  auto getting = settings.addCommand("get", "Print one value, or all below one place");
  auto key = std::make_shared<std::string>();
  getting
      .addOption("KEY", *key,
                 "Keys with '/' between them, such as devices/0/options/speed. A device may be given\n"
                 "as its index, product (1020), product and version (2041:0107) or name (skiffline)")
      .required();
  getting.does([&context, key] { context.exitCode = get(*key, context); });
}

}  // namespace veltrix::ctl
