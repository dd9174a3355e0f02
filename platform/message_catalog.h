#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace veltrix {

// The texts of a compiled gettext catalogue (a ".mo" file).
class MessageCatalog {
 public:
  // Reads a catalogue in either byte order. Entries that lie outside of `bytes` are left out, as is
  // everything when the header is no catalogue's.
  static MessageCatalog read(std::string_view bytes);

  // None without a text of that key.
  std::optional<std::string> find(const std::string& key) const;

  std::size_t count() const { return fTexts.size(); }

 private:
  std::unordered_map<std::string, std::string> fTexts;
};

}  // namespace veltrix
