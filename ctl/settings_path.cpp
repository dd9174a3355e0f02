#include "ctl/settings_path.h"

#include <charconv>

#include "ctl/device_selector.h"
#include "ctl/outcome.h"
#include "settings/settings_keys.h"

namespace veltrix::ctl {
namespace {

std::vector<std::string> partsOf(std::string_view path) {
  std::vector<std::string> parts;
  while (!path.empty()) {
    const std::size_t slash = path.find('/');
    parts.emplace_back(path.substr(0, slash));
    path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
  }
  return parts;
}

Error noSuchKey(const std::string& path) {
  return {kNotFound, "there is no \"" + path + "\"", {}};
}

Result<std::size_t> indexIn(const plist::Array& array, const std::string& part, const SettingsPlace& place) {
  if (place.path == keys::kDevices) {
    return selectDevice(array, part);
  }
  std::size_t index = 0;
  const char* end = part.data() + part.size();
  const auto [stop, problem] = std::from_chars(part.data(), end, index);
  if (part.empty() || stop != end || problem != std::errc() || index >= array.count()) {
    return noSuchKey(place.path + "/" + part);
  }
  return index;
}

// One step down from `place`.
Result<SettingsPlace> step(const SettingsPlace& place, const std::string& part) {
  const std::string prefix = place.path.empty() ? "" : place.path + "/";
  if (const auto dictionary = place.value.asDictionary()) {
    return SettingsPlace{dictionary, part, dictionary.get(part), prefix + part};
  }
  const auto array = place.value.asArray();
  if (!array) {
    return noSuchKey(prefix + part);
  }
  const auto index = indexIn(array, part, place);
  if (!index) {
    return index.error();
  }
  const std::string text = std::to_string(index.value());
  return SettingsPlace{{}, text, array.at(index.value()), prefix + text};
}

}  // namespace

Result<SettingsPlace> findPlace(const plist::Dictionary& document, std::string_view path) {
  SettingsPlace place{{}, {}, document, {}};
  for (const auto& part : partsOf(path)) {
    auto next = step(place, part);
    if (!next) {
      return next;
    }
    place = std::move(next.value());
  }
  return place;
}

}  // namespace veltrix::ctl
