#include <fstream>

#include "platform/keymap_sources.h"

namespace veltrix::xkb {
namespace {

std::optional<LayoutNames> namesInFile(const std::string& path) {
  constexpr std::streamsize kMostBytes = 65536;
  std::ifstream file(path, std::ios::binary);
  std::string text(kMostBytes, '\0');
  file.read(text.data(), kMostBytes);
  text.resize(static_cast<std::size_t>(file.gcount()));
  return readLayoutNames(text);
}

}  // namespace

Context makeContext() {
  Context context(xkb_context_new(XKB_CONTEXT_NO_ENVIRONMENT_NAMES));
  if (context) {
    xkb_context_set_log_fn(context.get(), [](xkb_context*, xkb_log_level, const char*, va_list) {});
  }
  return context;
}

FoundKeymap keymapOfNames(xkb_context* context, const LayoutNames& names) {
  const xkb_rule_names rules{nullptr, names.model.c_str(), names.layout.c_str(), names.variant.c_str(),
                             names.options.c_str()};
  return {Keymap(xkb_keymap_new_from_names(context, &rules, XKB_KEYMAP_COMPILE_NO_FLAGS)), 0};
}

FoundKeymap keymapOfSystem(xkb_context* context, const std::optional<LayoutNames>& names,
                           const std::string& defaultsFile) {
  FoundKeymap found;
  if (names) {
    found = keymapOfNames(context, *names);
  }
  if (!found.keymap && !defaultsFile.empty()) {
    if (const auto inFile = namesInFile(defaultsFile)) {
      found = keymapOfNames(context, *inFile);
    }
  }
  if (!found.keymap) {
    found = keymapOfNames(context, {.model = "", .layout = kAmericanLayout, .variant = "", .options = ""});
  }
  return found;
}

}  // namespace veltrix::xkb
