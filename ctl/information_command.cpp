#include <chrono>
#include <iostream>
#include <memory>

#include "ctl/commands.h"
#include "ctl/connected_devices.h"
#include "ctl/document_file.h"
#include "ctl/outcome.h"
#include "ctl/plist_json.h"
#include "platform/bundle.h"
#include "platform/os_release.h"
#include "settings/settings_keys.h"
#include "settings/support_information.h"

namespace veltrix::ctl {
namespace {

int run(const std::string& output, const Context& context) {
  const auto file = readCurrentSettings("no report was made");
  if (!file.document) {
    return file.exitCode;
  }
  const auto devices = connectedDevices();
  if (!devices) {
    note(devices.error().message + "; the report names no trackballs");
  }
  const SupportFacts facts = {std::chrono::system_clock::now(),
                              Bundle::standard().infoValue("CFBundleVersion"), readOsRelease(),
                              devices ? &devices.value() : nullptr};
  auto root = file.root();
  root.set(keys::kSupport, makeSupportInformation(facts));
  const auto bytes = context.json ? Result<std::string>(jsonText(jsonOf(root))) : plist::writeXml(root);
  if (!output.empty() || !bytes) {
    return writeOutput(output, bytes);
  }
  std::cout << bytes.value();
  return kDone;
}

}  // namespace

void addInformationCommand(CommandLine app, Context& context) {
  auto command = app.addCommand(
      "information",
      "Print what the people who help users ask for: settings, versions, connected trackballs");
  auto output = std::make_shared<std::string>();
  command.addOption("-o,--output", *output, "The file to write instead; one that is there is replaced");
  command.does([&context, output] { context.exitCode = run(*output, context); });
}

}  // namespace veltrix::ctl
