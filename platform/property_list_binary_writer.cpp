#include <bit>
#include <cmath>
#include <optional>
#include <unordered_map>
#include <utility>

#include "platform/property_list_binary.h"
#include "platform/property_list_io.h"
#include "platform/property_list_limits.h"
#include "platform/text_encoding.h"

namespace veltrix::plist {

namespace {

void appendNumber(std::string& out, std::uint64_t value, std::size_t size) {
  for (std::size_t i = size; i > 0; --i) {
    out.push_back(static_cast<char>(static_cast<unsigned char>(value >> (8 * (i - 1)) & 0xFFU)));
  }
}

std::size_t bytesFor(std::uint64_t value) {
  return value <= 0xFF ? 1 : value <= 0xFFFF ? 2 : value <= 0xFFFFFFFF ? 4 : 8;
}

void appendMarker(std::string& out, binary::Kind kind, std::size_t low) {
  out.push_back(static_cast<char>(static_cast<unsigned char>(kind << 4U | low)));
}

void appendInteger(std::string& out, std::int64_t value) {
  // Only eight bytes carry a sign.
  const std::size_t size = value < 0 ? 8 : bytesFor(static_cast<std::uint64_t>(value));
  appendMarker(out, binary::kInteger, static_cast<std::size_t>(std::countr_zero(size)));
  appendNumber(out, static_cast<std::uint64_t>(value), size);
}

void appendHead(std::string& out, binary::Kind kind, std::size_t count) {
  if (count < binary::kCountFollows) {
    appendMarker(out, kind, count);
    return;
  }
  appendMarker(out, kind, binary::kCountFollows);
  appendInteger(out, static_cast<std::int64_t>(count));
}

void appendDouble(std::string& out, binary::Kind kind, double value) {
  appendMarker(out, kind, 3);
  appendNumber(out, std::bit_cast<std::uint64_t>(value), 8);
}

// Objects are numbered in the order in which a walk from the root first meets them. Equal scalars share one
// object, which is what their bytes in the file are the key for; containers are never shared.
class Writer {
 public:
  Result<std::string> run(const Value& root);

 private:
  struct Object {
    std::string_view scalar;  // points into a key of fScalars; empty for a container
    bool isArray = false;
    std::vector<std::uint32_t> references;  // of a dictionary the keys, then the values
  };

  bool fail(std::string message);
  bool add(const Value& value, std::size_t depth, std::uint32_t& index);
  bool addContainer(const Value& value, std::size_t depth, std::uint32_t& index);
  bool addScalar(const Value& value, std::uint32_t& index);
  bool addString(std::string_view text, std::uint32_t& index);
  std::uint32_t addBytes(std::string bytes);
  std::string serialized() const;

  std::vector<Object> fObjects;
  std::unordered_map<std::string, std::uint32_t> fScalars;
  std::optional<Error> fError;
  Budget fBudget;
};

bool Writer::fail(std::string message) {
  fError = Error{0, std::move(message), std::nullopt};
  return false;
}

Result<std::string> Writer::run(const Value& root) {
  std::uint32_t index = 0;
  if (!add(root, 1, index)) {
    return *fError;
  }
  std::string bytes = serialized();
  if (bytes.size() > kMaximumFileBytes) {
    return Error{0, "larger than 64 MiB", std::nullopt};
  }
  return bytes;
}

bool Writer::add(const Value& value, std::size_t depth, std::uint32_t& index) {
  if (const std::string* text = value.stringIf()) {
    return addString(*text, index);
  }
  if (!fBudget.take(value.dataIf() != nullptr ? value.dataIf()->size() : 0)) {
    return fail("too many values");
  }
  const bool isContainer = value.type() == Type::kArray || value.type() == Type::kDictionary;
  return isContainer ? addContainer(value, depth, index) : addScalar(value, index);
}

bool Writer::addContainer(const Value& value, std::size_t depth, std::uint32_t& index) {
  if (depth > kMaximumNesting) {
    return fail("nested too deeply, or a container that holds itself");
  }
  index = static_cast<std::uint32_t>(fObjects.size());
  fObjects.push_back({{}, value.type() == Type::kArray, {}});
  const Array array = value.asArray();
  const Dictionary dictionary = value.asDictionary();
  std::vector<std::uint32_t> references;
  references.reserve(array.count() + 2 * dictionary.count());
  std::uint32_t reference = 0;
  for (const Entry& entry : dictionary.entries()) {
    if (!addString(entry.key, reference)) {
      return false;
    }
    references.push_back(reference);
  }
  for (const Entry& entry : dictionary.entries()) {
    if (!add(entry.value, depth + 1, reference)) {
      return false;
    }
    references.push_back(reference);
  }
  for (const Value& item : array.items()) {
    if (!add(item, depth + 1, reference)) {
      return false;
    }
    references.push_back(reference);
  }
  fObjects[index].references = std::move(references);
  return true;
}

bool Writer::addScalar(const Value& value, std::uint32_t& index) {
  std::string bytes;
  switch (value.type()) {
    case Type::kBoolean:
      appendMarker(bytes, binary::kSingle, value.asBool() ? binary::kTrue : binary::kFalse);
      break;
    case Type::kInteger:
      appendInteger(bytes, value.asInt64());
      break;
    case Type::kReal:
      appendDouble(bytes, binary::kReal, value.asReal());
      break;
    case Type::kDate:
      if (!std::isfinite(value.asDate().seconds)) {
        return fail("a date that is no number");
      }
      appendDouble(bytes, binary::kDate, value.asDate().seconds);
      break;
    case Type::kData: {
      const Data& data = *value.dataIf();
      appendHead(bytes, binary::kData, data.size());
      for (const std::byte byte : data) {
        bytes.push_back(static_cast<char>(byte));
      }
      break;
    }
    default:
      return fail("a missing value");
  }
  index = addBytes(std::move(bytes));
  return true;
}

bool Writer::addString(std::string_view text, std::uint32_t& index) {
  if (!fBudget.take(text.size())) {
    return fail("too many values");
  }
  std::string bytes;
  if (isAscii(text)) {
    bytes.reserve(text.size() + 10);
    appendHead(bytes, binary::kAscii, text.size());
    bytes.append(text);
  } else if (firstBadUtf8(text)) {
    return fail("a string that is not UTF-8");
  } else {
    const std::string units = utf16BigEndian(text);
    appendHead(bytes, binary::kUtf16, units.size() / 2);
    bytes.append(units);
  }
  index = addBytes(std::move(bytes));
  return true;
}

std::uint32_t Writer::addBytes(std::string bytes) {
  const auto [entry, isNew] =
      fScalars.try_emplace(std::move(bytes), static_cast<std::uint32_t>(fObjects.size()));
  if (isNew) {
    fObjects.push_back({entry->first, false, {}});
  }
  return entry->second;
}

std::string Writer::serialized() const {
  std::string out(binary::kMagic);
  out.append("00");
  const std::size_t referenceSize = bytesFor(fObjects.size() - 1);
  std::vector<std::size_t> offsets;
  offsets.reserve(fObjects.size());
  for (const Object& object : fObjects) {
    offsets.push_back(out.size());
    if (!object.scalar.empty()) {
      out.append(object.scalar);
      continue;
    }
    const std::size_t count = object.references.size() / (object.isArray ? 1 : 2);
    appendHead(out, object.isArray ? binary::kArray : binary::kDictionary, count);
    for (const std::uint32_t reference : object.references) {
      appendNumber(out, reference, referenceSize);
    }
  }
  const std::size_t table = out.size();
  const std::size_t offsetSize = bytesFor(table);
  for (const std::size_t offset : offsets) {
    appendNumber(out, offset, offsetSize);
  }
  out.append(binary::kOffsetSizeAt, '\0');
  appendNumber(out, offsetSize, 1);
  appendNumber(out, referenceSize, 1);
  appendNumber(out, fObjects.size(), 8);
  appendNumber(out, 0, 8);
  appendNumber(out, table, 8);
  return out;
}

}  // namespace

Result<std::string> writeBinary(const Value& root) {
  return Writer().run(root);
}

}  // namespace veltrix::plist
