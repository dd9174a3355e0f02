#include "helper/typing/gnome_sources.h"

#include <algorithm>
#include <utility>

#include "helper/desktop/printed_setting.h"

namespace veltrix {
namespace {

constexpr std::string_view kSchema = "org.gnome.desktop.input-sources ";
constexpr std::ptrdiff_t kLayoutsInAKeymap = 3;

std::optional<InputSource> takeSource(PrintedSetting& reader) {
  if (!reader.take("(")) {
    return {};
  }
  auto kind = reader.takeText();
  auto name = kind && reader.take(",") ? reader.takeText() : std::nullopt;
  if (!name || !reader.take(")")) {
    return {};
  }
  return InputSource{std::move(*kind), std::move(*name)};
}

// The rest of the line that begins with the key.
std::string_view valueOf(std::string_view listed, std::string_view key) {
  while (!listed.empty()) {
    std::string_view line = listed.substr(0, listed.find('\n'));
    listed.remove_prefix(std::min(line.size() + 1, listed.size()));
    if (line.starts_with(kSchema) && line.substr(kSchema.size()).starts_with(key)) {
      return line.substr(kSchema.size() + key.size());
    }
  }
  return {};
}

std::optional<std::vector<InputSource>> layoutsIn(std::string_view printed) {
  auto sources = inputSources(printed);
  if (sources) {
    std::erase_if(*sources, [](const InputSource& source) { return source.kind != "xkb"; });
  }
  return sources;
}

}  // namespace

std::optional<std::vector<InputSource>> inputSources(std::string_view printed) {
  PrintedSetting reader(printed);
  reader.take("@a(ss)");
  if (!reader.take("[")) {
    return {};
  }
  std::vector<InputSource> sources;
  if (!reader.take("]")) {
    do {
      auto source = takeSource(reader);
      if (!source) {
        return {};
      }
      sources.push_back(std::move(*source));
    } while (reader.take(","));
    if (!reader.take("]")) {
      return {};
    }
  }
  return reader.isAtEnd() ? std::optional(std::move(sources)) : std::nullopt;
}

std::optional<std::uint32_t> groupOfSources(std::string_view listed) {
  const auto layouts = layoutsIn(valueOf(listed, "sources "));
  if (!layouts || layouts->empty()) {
    return {};
  }
  // What was used once may have been taken out of the sources since; the first of them is on before any use.
  for (const InputSource& used : layoutsIn(valueOf(listed, "mru-sources ")).value_or(*layouts)) {
    const auto place = std::find(layouts->begin(), layouts->end(), used);
    if (place != layouts->end()) {
      return static_cast<std::uint32_t>((place - layouts->begin()) % kLayoutsInAKeymap);
    }
  }
  return 0;
}

}  // namespace veltrix
