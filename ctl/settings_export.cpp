#include <cerrno>
#include <filesystem>
#include <memory>

#include "ctl/document_file.h"
#include "ctl/outcome.h"
#include "ctl/settings_commands.h"
#include "platform/atomic_file.h"

namespace veltrix::ctl {
namespace {

int exportTo(const std::string& path, bool force) {
  const auto file = readCurrentSettings("nothing was written");
  if (!file.document) {
    return file.exitCode;
  }
  std::error_code error;
  if (std::filesystem::equivalent(path, file.path, error)) {
    return fail(kBadInput, path + ": is the settings file itself; nothing was written");
  }
  const auto xml = plist::writeXml(file.root());
  if (force || !xml) {
    return writeOutput(path, xml);
  }
  const Status written = writeNewFileAtomically(path, xml.value());
  if (!written && written.error().code == EEXIST) {
    return fail(kNotFound, path + ": is there already, and --force was not given; nothing was written");
  }
  return written ? kDone : fail(kNotFound, about(path, written.error().message) + "; nothing was written");
}

}  // namespace

void addSettingsExportCommand(CommandLine settings, Context& context) {
  auto command = settings.addCommand("export", "Write the settings in force into a file, as XML");
  auto path = std::make_shared<std::string>();
  auto force = std::make_shared<bool>(false);
  command.addOption("FILE", *path, "The file to write").required();
  command.addFlag("--force", *force, "Replace a file that is there");
  command.does([&context, path, force] { context.exitCode = exportTo(*path, *force); });
}

}  // namespace veltrix::ctl
