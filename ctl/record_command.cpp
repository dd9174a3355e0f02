#include <array>
#include <charconv>
#include <cstring>
#include <iostream>
#include <memory>
#include <optional>

#include "ctl/commands.h"
#include "ctl/document_file.h"
#include "ctl/hex_ids.h"
#include "ctl/outcome.h"
#include "ctl/plist_json.h"
#include "settings/driver_record.h"
#include "settings/settings_keys.h"

namespace veltrix::ctl {
namespace {

struct Arguments {
  std::vector<std::string> positional;  // [FILE] INDEX
  std::string fallback;
};

// The entry at the index that `text` spells; says what is wrong and leaves the exit code.
std::optional<plist::Dictionary> entryAt(const DocumentFile& file, const std::string& text, int* exitCode) {
  std::size_t index = 0;
  const char* end = text.data() + text.size();
  const auto [stop, problem] = std::from_chars(text.data(), end, index);
  if (text.empty() || stop != end || problem != std::errc()) {
    *exitCode = fail(kBadInput, "\"" + text + "\" is not an index into \"devices\"");
    return std::nullopt;
  }
  const auto entry = file.root().arrayFor(keys::kDevices).at(index).asDictionary();
  if (!entry) {
    *exitCode = fail(kNotFound, file.path + ": there is no entry devices/" + text);
    return std::nullopt;
  }
  return entry;
}

std::string recordText(const DriverRecord& record) {
  std::array<unsigned char, sizeof record> bytes{};
  std::memcpy(bytes.data(), &record, bytes.size());
  return hexBytes(bytes);
}

int run(const Arguments& arguments, const Context& context) {
  const bool hasFile = arguments.positional.size() == 2;
  const auto file = readSettings(hasFile ? arguments.positional.front() : std::string());
  if (!file.document) {
    return file.exitCode;
  }
  int exitCode = kDone;
  const auto entry = entryAt(file, arguments.positional.back(), &exitCode);
  const auto fallback = arguments.fallback.empty() ? std::optional<plist::Dictionary>(std::in_place)
                                                   : entryAt(file, arguments.fallback, &exitCode);
  if (!entry || !fallback) {
    return exitCode;
  }
  DriverRecord record{};
  const bool built = VeltrixAppPrefsDictToStruct(*entry, *fallback, &record);
  if (context.json) {
    std::cout << jsonText({{"built", built}, {"record", recordText(record)}});
  } else {
    std::cout << (built ? "true " : "false ") << recordText(record) << '\n';
  }
  return built ? kDone
               : fail(kNotFound, file.path + ": devices/" + arguments.positional.back() +
                                     ": \"dict version\" is not 1, so nothing of the entry is used");
}

}  // namespace

void addRecordCommand(CommandLine app, Context& context) {
  auto command = app.addCommand(
      "record", "Print the 176 bytes that the driver gets for an entry, and whether they could be built");
  auto arguments = std::make_shared<Arguments>();
  command
      .addOption("FILE_INDEX", arguments->positional,
                 "[FILE] INDEX: a settings file (the user's own by default) and an index into \"devices\"")
      .required()
      .takes(1, 2);
  command.addOption("--fallback", arguments->fallback,
                    "The index of the entry for buttons that defer to another (command 200)");
  command.does([&context, arguments] { context.exitCode = run(*arguments, context); });
}

}  // namespace veltrix::ctl
