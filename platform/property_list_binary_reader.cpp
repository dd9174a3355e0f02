#include "platform/property_list_binary_reader.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include "platform/property_list_binary.h"
#include "platform/property_list_limits.h"
#include "platform/text_encoding.h"

namespace veltrix::plist {

namespace {

// A file repeats containers by reference when something else than a property-list writer made it, so the
// values that it may reach are bound to its size.
std::size_t nodesFor(std::size_t bytes) {
  return std::min(kMaximumNodes, 100'000 + 8 * bytes);
}

class Reader {
 public:
  explicit Reader(std::string_view bytes) : fBytes(bytes), fBudget(nodesFor(bytes.size())) {}
  Result<Value> run();

 private:
  // A marker with the count or size that belongs to it; `at` is where the contents start.
  struct Head {
    std::uint8_t kind = 0;
    std::uint8_t low = 0;
    std::uint64_t count = 0;
    std::size_t at = 0;
    std::size_t offset = 0;
  };

  bool fail(std::size_t offset, std::string message);
  std::uint64_t number(std::size_t at, std::size_t size) const;
  bool trailer(std::uint64_t& root);
  bool object(std::uint64_t index, std::size_t depth, Value& out);
  bool head(std::size_t offset, Head& out);
  bool contents(const Head& head, std::size_t unit, std::string_view& out);
  bool value(const Head& head, std::uint64_t index, std::size_t depth, Value& out);
  bool single(const Head& head, Value& out);
  bool integer(const Head& head, Value& out);
  bool real(const Head& head, Value& out);
  bool data(const Head& head, Value& out);
  bool string(const Head& head, Value& out);
  bool container(const Head& head, std::uint64_t index, std::size_t depth, Value& out);
  bool array(const Head& head, std::string_view references, std::size_t depth, Value& out);
  bool dictionary(const Head& head, std::string_view references, std::size_t depth, Value& out);
  std::uint64_t reference(std::string_view references, std::uint64_t position) const;

  std::string_view fBytes;
  std::size_t fOffsetSize = 0;
  std::size_t fReferenceSize = 0;
  std::uint64_t fObjects = 0;
  std::size_t fTable = 0;            // also the end of the objects
  std::vector<std::uint64_t> fOpen;  // the containers that are being read, outermost first
  std::optional<Error> fError;
  Budget fBudget;
};

bool Reader::fail(std::size_t offset, std::string message) {
  fError = Error{0, std::move(message), offset};
  return false;
}

std::uint64_t Reader::number(std::size_t at, std::size_t size) const {
  std::uint64_t value = 0;
  for (const char c : fBytes.substr(at, size)) {
    value = value << 8U | static_cast<unsigned char>(c);
  }
  return value;
}

Result<Value> Reader::run() {
  std::uint64_t root = 0;
  Value result;
  if (!trailer(root) || !object(root, 1, result)) {
    return *fError;
  }
  return result;
}

bool Reader::trailer(std::uint64_t& root) {
  if (fBytes.size() < binary::kHeadSize + binary::kTrailerSize) {
    return fail(fBytes.size(), "too short for a binary property list");
  }
  if (fBytes.substr(kBinaryMagic.size(), 2) != "00") {
    return fail(kBinaryMagic.size(), "a version of the binary form other than 00");
  }
  const std::size_t start = fBytes.size() - binary::kTrailerSize;
  fOffsetSize = number(start + binary::kOffsetSizeAt, 1);
  fReferenceSize = number(start + binary::kReferenceSizeAt, 1);
  fObjects = number(start + binary::kObjectCountAt, 8);
  root = number(start + binary::kRootAt, 8);
  const std::uint64_t table = number(start + binary::kTableAt, 8);
  if (fOffsetSize < 1 || fOffsetSize > 8 || fReferenceSize < 1 || fReferenceSize > 8) {
    return fail(start + binary::kOffsetSizeAt, "a size in the trailer that is not 1 to 8");
  }
  if (table < binary::kHeadSize || table > start || fObjects > (start - table) / fOffsetSize) {
    return fail(start + binary::kObjectCountAt, "a table of offsets that does not fit");
  }
  fTable = table;
  return true;
}

bool Reader::object(std::uint64_t index, std::size_t depth, Value& out) {
  if (index >= fObjects) {
    return fail(fBytes.size() - binary::kTrailerSize, "a reference to an object that there is not");
  }
  const std::size_t entry = fTable + index * fOffsetSize;
  const std::uint64_t offset = number(entry, fOffsetSize);
  if (offset < binary::kHeadSize || offset >= fTable) {
    return fail(entry, "an offset outside the objects");
  }
  Head found;
  return head(offset, found) && value(found, index, depth, out);
}

bool Reader::head(std::size_t offset, Head& out) {
  const std::uint64_t marker = number(offset, 1);
  out.kind = static_cast<std::uint8_t>(marker >> 4U);
  out.low = static_cast<std::uint8_t>(marker & 0x0FU);
  out.count = out.low;
  out.at = offset + 1;
  out.offset = offset;
  const bool counted = out.kind >= binary::kData;
  if (!counted || out.low != binary::kCountFollows) {
    return true;
  }
  const std::uint64_t size = out.at < fTable ? number(out.at, 1) : 0;
  if (size >> 4U != binary::kInteger || (size & 0x0FU) > 3 || (1U << (size & 0x0FU)) > fTable - out.at - 1) {
    return fail(offset, "a bad count");
  }
  out.count = number(out.at + 1, 1U << (size & 0x0FU));
  out.at += 1 + (1U << (size & 0x0FU));
  return true;
}

// The bytes of `count` units from the head on, when they end before the table.
bool Reader::contents(const Head& head, std::size_t unit, std::string_view& out) {
  if (head.count > (fTable - head.at) / unit) {
    return fail(head.offset, "contents that reach beyond the objects");
  }
  out = fBytes.substr(head.at, head.count * unit);
  return fBudget.take(out.size()) || fail(head.offset, "too many values");
}

bool Reader::value(const Head& head, std::uint64_t index, std::size_t depth, Value& out) {
  switch (head.kind) {
    case binary::kSingle:
      return single(head, out);
    case binary::kInteger:
      return integer(head, out);
    case binary::kReal:
    case binary::kDate:
      return real(head, out);
    case binary::kData:
      return data(head, out);
    case binary::kAscii:
    case binary::kUtf16:
      return string(head, out);
    case binary::kArray:
    case binary::kDictionary:
      return container(head, index, depth, out);
    default:
      return fail(head.offset, "an object that property lists do not have");
  }
}

bool Reader::single(const Head& head, Value& out) {
  if (head.low != binary::kFalse && head.low != binary::kTrue) {
    return fail(head.offset, "an object that property lists do not have");
  }
  out = Value(head.low == binary::kTrue);
  return fBudget.take() || fail(head.offset, "too many values");
}

bool Reader::integer(const Head& head, Value& out) {
  Head sized = head;
  sized.count = head.low <= 4 ? 1U << head.low : 0U;
  std::string_view bytes;
  if (sized.count == 0) {
    return fail(head.offset, "an integer of a size that integers do not have");
  }
  if (!contents(sized, 1, bytes)) {
    return false;
  }
  // Up to four bytes are without sign, eight and sixteen are with it.
  std::uint64_t low = number(head.at, bytes.size());
  if (bytes.size() == 16) {
    low = number(head.at + 8, 8);
    const std::uint64_t signs = low >> 63U != 0 ? ~std::uint64_t{0} : 0;
    if (number(head.at, 8) != signs) {
      return fail(head.offset, "an integer beyond 64 bits");
    }
  }
  out = Value(static_cast<std::int64_t>(low));
  return true;
}

bool Reader::real(const Head& head, Value& out) {
  Head sized = head;
  sized.count = 1U << head.low;
  std::string_view bytes;
  if (head.low != 3 && (head.low != 2 || head.kind == binary::kDate)) {
    return fail(head.offset, "a real or date of a size that it does not have");
  }
  if (!contents(sized, 1, bytes)) {
    return false;
  }
  const std::uint64_t bits = number(head.at, bytes.size());
  const double number = bytes.size() == 8
                            ? std::bit_cast<double>(bits)
                            : static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
  if (head.kind == binary::kDate) {
    out = Date{number};
    return std::isfinite(number) || fail(head.offset, "a date that is no number");
  }
  out = number;
  return true;
}

bool Reader::data(const Head& head, Value& out) {
  std::string_view bytes;
  if (!contents(head, 1, bytes)) {
    return false;
  }
  Data result(bytes.size());
  if (!bytes.empty()) {
    std::memcpy(result.data(), bytes.data(), bytes.size());
  }
  out = std::move(result);
  return true;
}

bool Reader::string(const Head& head, Value& out) {
  const bool ascii = head.kind == binary::kAscii;
  std::string_view bytes;
  if (!contents(head, ascii ? 1 : 2, bytes)) {
    return false;
  }
  if (ascii) {
    out = bytes;
    return isAscii(bytes) || fail(head.offset, "an ASCII string with other characters");
  }
  std::string text;
  if (const auto bad = appendUtf16AsUtf8(bytes, ByteOrder::kBigEndian, text)) {
    return fail(head.at + *bad, "bad UTF-16");
  }
  out = std::move(text);
  return true;
}

bool Reader::container(const Head& head, std::uint64_t index, std::size_t depth, Value& out) {
  if (depth > kMaximumNesting) {
    return fail(head.offset, "nested too deeply");
  }
  if (std::find(fOpen.begin(), fOpen.end(), index) != fOpen.end()) {
    return fail(head.offset, "a container that holds itself");
  }
  const bool isArray = head.kind == binary::kArray;
  std::string_view references;
  if (!contents(head, isArray ? fReferenceSize : 2 * fReferenceSize, references)) {
    return false;
  }
  fOpen.push_back(index);
  const bool good = isArray ? array(head, references, depth, out) : dictionary(head, references, depth, out);
  fOpen.pop_back();
  return good;
}

std::uint64_t Reader::reference(std::string_view references, std::uint64_t position) const {
  const auto start = static_cast<std::size_t>(references.data() - fBytes.data());
  return number(start + position * fReferenceSize, fReferenceSize);
}

bool Reader::array(const Head& head, std::string_view references, std::size_t depth, Value& out) {
  Array result = Array::create();
  for (std::uint64_t i = 0; i < head.count; ++i) {
    Value item;
    if (!object(reference(references, i), depth + 1, item)) {
      return false;
    }
    result.append(std::move(item));
  }
  out = std::move(result);
  return true;
}

bool Reader::dictionary(const Head& head, std::string_view references, std::size_t depth, Value& out) {
  Dictionary result = Dictionary::create();
  for (std::uint64_t i = 0; i < head.count; ++i) {
    Value key;
    Value item;
    if (!object(reference(references, i), depth + 1, key)) {
      return false;
    }
    if (key.stringIf() == nullptr) {
      return fail(head.offset, "a key that is no string");
    }
    if (!object(reference(references, head.count + i), depth + 1, item)) {
      return false;
    }
    result.set(*key.stringIf(), std::move(item));
  }
  out = std::move(result);
  return true;
}

}  // namespace

Result<Value> readBinary(std::string_view bytes) {
  return Reader(bytes).run();
}

}  // namespace veltrix::plist
