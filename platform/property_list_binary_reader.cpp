#include "platform/property_list_binary_reader.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "platform/property_list_binary.h"
#include "platform/property_list_binary_objects.h"
#include "platform/text_encoding.h"

namespace veltrix::plist {

namespace {

using binary::ObjectHead;

class Reader {
 public:
  explicit Reader(std::string_view bytes) : fObjects(bytes) {}
  Result<Value> run();

 private:
  bool fail(const ObjectHead& head, std::string message) {
    return fObjects.fail(head.offset, std::move(message));
  }
  bool object(std::uint64_t index, std::size_t depth, Value& out);
  bool value(const ObjectHead& head, std::uint64_t index, std::size_t depth, Value& out);
  bool single(const ObjectHead& head, Value& out);
  bool integer(const ObjectHead& head, Value& out);
  bool real(const ObjectHead& head, Value& out);
  bool data(const ObjectHead& head, Value& out);
  bool string(const ObjectHead& head, Value& out);
  bool container(const ObjectHead& head, std::uint64_t index, std::size_t depth, Value& out);
  bool array(const ObjectHead& head, std::string_view references, std::size_t depth, Value& out);
  bool dictionary(const ObjectHead& head, std::string_view references, std::size_t depth, Value& out);

  binary::Objects fObjects;
  std::vector<std::uint64_t> fOpen;  // the containers that are being read, outermost first
};

Result<Value> Reader::run() {
  std::uint64_t root = 0;
  Value result;
  if (!fObjects.open(root) || !object(root, 1, result)) {
    return *fObjects.error();
  }
  return result;
}

bool Reader::object(std::uint64_t index, std::size_t depth, Value& out) {
  ObjectHead found;
  return fObjects.find(index, found) && value(found, index, depth, out);
}

bool Reader::value(const ObjectHead& head, std::uint64_t index, std::size_t depth, Value& out) {
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
      return fail(head, "an object that property lists do not have");
  }
}

bool Reader::single(const ObjectHead& head, Value& out) {
  if (head.low != binary::kFalse && head.low != binary::kTrue) {
    return fail(head, "an object that property lists do not have");
  }
  out = Value(head.low == binary::kTrue);
  return fObjects.count(head);
}

bool Reader::integer(const ObjectHead& head, Value& out) {
  ObjectHead sized = head;
  sized.count = head.low <= 4 ? 1U << head.low : 0U;
  std::string_view bytes;
  if (sized.count == 0) {
    return fail(head, "an integer of a size that integers do not have");
  }
  if (!fObjects.contents(sized, 1, bytes)) {
    return false;
  }
  // Up to four bytes are without sign, eight and sixteen are with it.
  std::uint64_t low = fObjects.number(head.at, bytes.size());
  if (bytes.size() == 16) {
    low = fObjects.number(head.at + 8, 8);
    const std::uint64_t signs = low >> 63U != 0 ? ~std::uint64_t{0} : 0;
    if (fObjects.number(head.at, 8) != signs) {
      return fail(head, "an integer beyond 64 bits");
    }
  }
  out = Value(static_cast<std::int64_t>(low));
  return true;
}

bool Reader::real(const ObjectHead& head, Value& out) {
  ObjectHead sized = head;
  sized.count = 1U << head.low;
  std::string_view bytes;
  if (head.low != 3 && (head.low != 2 || head.kind == binary::kDate)) {
    return fail(head, "a real or date of a size that it does not have");
  }
  if (!fObjects.contents(sized, 1, bytes)) {
    return false;
  }
  const std::uint64_t bits = fObjects.number(head.at, bytes.size());
  const double number = bytes.size() == 8
                            ? std::bit_cast<double>(bits)
                            : static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
  if (head.kind == binary::kDate) {
    out = Date{number};
    return std::isfinite(number) || fail(head, "a date that is no number");
  }
  out = number;
  return true;
}

bool Reader::data(const ObjectHead& head, Value& out) {
  std::string_view bytes;
  if (!fObjects.contents(head, 1, bytes)) {
    return false;
  }
  Data result(bytes.size());
  if (!bytes.empty()) {
    std::memcpy(result.data(), bytes.data(), bytes.size());
  }
  out = std::move(result);
  return true;
}

bool Reader::string(const ObjectHead& head, Value& out) {
  const bool ascii = head.kind == binary::kAscii;
  std::string_view bytes;
  if (!fObjects.contents(head, ascii ? 1 : 2, bytes)) {
    return false;
  }
  if (ascii) {
    out = bytes;
    return isAscii(bytes) || fail(head, "an ASCII string with other characters");
  }
  std::string text;
  if (const auto bad = appendUtf16AsUtf8(bytes, ByteOrder::kBigEndian, text)) {
    return fObjects.fail(head.at + *bad, "bad UTF-16");
  }
  out = std::move(text);
  return true;
}

bool Reader::container(const ObjectHead& head, std::uint64_t index, std::size_t depth, Value& out) {
  if (depth > kMaximumNesting) {
    return fail(head, "nested too deeply");
  }
  if (std::find(fOpen.begin(), fOpen.end(), index) != fOpen.end()) {
    return fail(head, "a container that holds itself");
  }
  const bool isArray = head.kind == binary::kArray;
  std::string_view references;
  if (!fObjects.contents(head, isArray ? fObjects.referenceSize() : 2 * fObjects.referenceSize(),
                         references)) {
    return false;
  }
  fOpen.push_back(index);
  const bool good = isArray ? array(head, references, depth, out) : dictionary(head, references, depth, out);
  fOpen.pop_back();
  return good;
}

bool Reader::array(const ObjectHead& head, std::string_view references, std::size_t depth, Value& out) {
  Array result = Array::create();
  for (std::uint64_t i = 0; i < head.count; ++i) {
    Value item;
    if (!object(fObjects.reference(references, i), depth + 1, item)) {
      return false;
    }
    result.append(std::move(item));
  }
  out = std::move(result);
  return true;
}

bool Reader::dictionary(const ObjectHead& head, std::string_view references, std::size_t depth, Value& out) {
  Dictionary result = Dictionary::create();
  for (std::uint64_t i = 0; i < head.count; ++i) {
    Value key;
    Value item;
    if (!object(fObjects.reference(references, i), depth + 1, key)) {
      return false;
    }
    if (key.stringIf() == nullptr) {
      return fail(head, "a key that is no string");
    }
    if (!object(fObjects.reference(references, head.count + i), depth + 1, item)) {
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
