#include "platform/message_catalog.h"

#include <cstdint>
#include <cstring>

namespace veltrix {

namespace {

constexpr std::uint32_t kMagic = 0x950412DE;
constexpr std::size_t kCountOffset = 8;
constexpr std::size_t kKeyTableOffset = 12;
constexpr std::size_t kTextTableOffset = 16;
constexpr std::size_t kTableRowBytes = 8;  // length, then offset

// Reads numbers and strings of a catalogue without ever leaving it.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : fBytes(bytes) {
    fSwapped = number(0) == __builtin_bswap32(kMagic);
    fRecognised = number(0) == kMagic;
  }

  bool recognised() const { return fRecognised; }

  std::optional<std::uint32_t> number(std::size_t offset) const {
    std::uint32_t value = 0;
    if (offset > fBytes.size() || fBytes.size() - offset < sizeof value) {
      return {};
    }
    std::memcpy(&value, fBytes.data() + offset, sizeof value);
    return fSwapped ? __builtin_bswap32(value) : value;
  }

  // The string that the row at `offset` of a table describes.
  std::optional<std::string> string(std::size_t offset) const {
    const auto length = number(offset);
    const auto start = number(offset + sizeof(std::uint32_t));
    if (!length || !start || *start > fBytes.size() || *length > fBytes.size() - *start) {
      return {};
    }
    return std::string(fBytes.substr(*start, *length));
  }

 private:
  std::string_view fBytes;
  bool fSwapped = false;
  bool fRecognised = false;
};

}  // namespace

MessageCatalog MessageCatalog::read(std::string_view bytes) {
  MessageCatalog catalog;
  const Reader reader(bytes);
  const auto count = reader.number(kCountOffset);
  const auto keys = reader.number(kKeyTableOffset);
  const auto texts = reader.number(kTextTableOffset);
  if (!reader.recognised() || !count || !keys || !texts) {
    return catalog;
  }
  for (std::size_t row = 0; row < *count && row * kTableRowBytes < bytes.size(); ++row) {
    auto key = reader.string(*keys + row * kTableRowBytes);
    auto text = reader.string(*texts + row * kTableRowBytes);
    if (key && text && !key->empty()) {  // the empty key holds the catalogue's own description
      catalog.fTexts.insert_or_assign(std::move(*key), std::move(*text));
    }
  }
  return catalog;
}

std::optional<std::string> MessageCatalog::find(const std::string& key) const {
  const auto text = fTexts.find(key);
  return text != fTexts.end() ? std::optional(text->second) : std::nullopt;
}

}  // namespace veltrix
