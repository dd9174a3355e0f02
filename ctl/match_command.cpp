#include <iostream>
#include <memory>

#include "ctl/commands.h"
#include "ctl/document_file.h"
#include "ctl/hex_ids.h"
#include "ctl/outcome.h"
#include "ctl/plist_json.h"
#include "settings/settings_keys.h"
#include "settings/settings_rules.h"

namespace veltrix::ctl {
namespace {

struct Arguments {
  std::string vendor;
  std::string product;
  std::string version;
  std::string file;
};

int run(const Arguments& arguments, const Context& context) {
  const auto ids = parseDeviceIds(arguments.vendor + ":" + arguments.product + ":" + arguments.version);
  if (!ids) {
    return fail(kBadInput, "vendor, product and version are one to four hexadecimal digits each");
  }
  const auto file = readSettings(arguments.file);
  if (!file.document) {
    return file.exitCode;
  }
  std::int32_t best = -1;
  std::int32_t global = -1;
  const bool found = VeltrixMatchAppPrefs(file.root().arrayFor(keys::kDevices), nullptr, nullptr, ids->vendor,
                                          ids->product, ids->version, &best, &global);
  if (context.json) {
    std::cout << jsonText({{"found", found}, {"best", best}, {"global", global}});
  } else {
    std::cout << "best " << best << "\nglobal " << global << '\n';
  }
  return found ? kDone : fail(kNotFound, file.path + ": no entry for " + deviceIdsText(*ids));
}

}  // namespace

void addMatchCommand(CommandLine app, Context& context) {
  auto command =
      app.addCommand("match", "Tell which entry of a settings file the helper chooses for a device");
  auto arguments = std::make_shared<Arguments>();
  command.addOption("--vendor", arguments->vendor, "USB vendor id, hexadecimal").required();
  command.addOption("--product", arguments->product, "USB product id, hexadecimal").required();
  command
      .addOption("--version", arguments->version,
                 "Product version, hexadecimal: high byte major, low byte minor (0107 is 1.07)")
      .required();
  command.addOption("FILE", arguments->file, "A settings file; the user's own by default");
  command.does([&context, arguments] { context.exitCode = run(*arguments, context); });
}

}  // namespace veltrix::ctl
