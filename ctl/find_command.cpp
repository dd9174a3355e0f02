#include <iostream>
#include <memory>

#include "ctl/commands.h"
#include "ctl/document_file.h"
#include "ctl/hex_ids.h"
#include "ctl/outcome.h"
#include "ctl/plist_json.h"
#include "settings/entry_lookup.h"
#include "settings/settings_keys.h"

namespace veltrix::ctl {
namespace {

struct Arguments {
  std::vector<std::string> devices;
  std::string preferred = "0";
  std::string file;
};

int run(const Arguments& arguments, const Context& context) {
  VeltrixDeviceList list{};
  for (const auto& text : arguments.devices) {
    const auto ids = parseDeviceIds(text);
    if (!ids) {
      return fail(kBadInput, "--device: \"" + text + "\" is not VENDOR:PRODUCT:VERSION in hexadecimal");
    }
    auto& device = list.device[list.count++];
    device.vendorID = ids->vendor;
    device.productID = ids->product;
    device.productVers = ids->version;
  }
  const auto preferred = parseHexId(arguments.preferred);
  if (!preferred) {
    return fail(kBadInput, "--prefer: \"" + arguments.preferred + "\" is not a product id in hexadecimal");
  }
  const auto file = readSettings(arguments.file);
  if (!file.document) {
    return file.exitCode;
  }
  const auto found = findEntryForDevices(file.root().arrayFor(keys::kDevices), &list, *preferred);
  if (context.json) {
    std::cout << jsonText({{"found", found.found}, {"index", found.index}, {"tab", found.deviceTab}});
  } else {
    std::cout << "index " << found.index << "\ntab " << found.deviceTab << '\n';
  }
  return found.found ? kDone : fail(kNotFound, file.path + ": no entry for these devices");
}

}  // namespace

void addFindCommand(CommandLine app, Context& context) {
  auto command =
      app.addCommand("find", "Tell which entry and page the window shows when devices are connected");
  auto arguments = std::make_shared<Arguments>();
  command
      .addOption("--device", arguments->devices,
                 "A connected device, VENDOR:PRODUCT:VERSION in hexadecimal; repeat it for more")
      .required()
      .repeats();
  command.addOption("--prefer", arguments->preferred,
                    "The product id to prefer when two or more are connected");
  command.addOption("FILE", arguments->file, "A settings file; the user's own by default");
  command.does([&context, arguments] {
    if (arguments->devices.size() > kVeltrixMaxDevices) {
      context.exitCode = fail(kBadInput, "--device: at most 16 devices");
      return;
    }
    context.exitCode = run(*arguments, context);
  });
}

}  // namespace veltrix::ctl
