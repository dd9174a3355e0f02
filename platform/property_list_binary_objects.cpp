#include "platform/property_list_binary_objects.h"

#include <algorithm>
#include <utility>

#include "platform/property_list_binary.h"
#include "platform/property_list_io.h"

namespace veltrix::plist::binary {

namespace {

// A file repeats containers by reference when something else than a property-list writer made it, so the
// values that it may reach are bound to its size.
std::size_t nodesFor(std::size_t bytes) {
  return std::min(kMaximumNodes, 100'000 + 8 * bytes);
}

}  // namespace

Objects::Objects(std::string_view bytes) : fBytes(bytes), fBudget(nodesFor(bytes.size())) {}

bool Objects::fail(std::size_t offset, std::string message) {
  fError = Error{0, std::move(message), offset};
  return false;
}

bool Objects::open(std::uint64_t& root) {
  if (fBytes.size() < kHeadSize + kTrailerSize) {
    return fail(fBytes.size(), "too short for a binary property list");
  }
  if (fBytes.substr(kMagic.size(), 2) != "00") {
    return fail(kMagic.size(), "a version of the binary form other than 00");
  }
  const std::size_t start = fBytes.size() - kTrailerSize;
  fOffsetSize = number(start + kOffsetSizeAt, 1);
  fReferenceSize = number(start + kReferenceSizeAt, 1);
  fObjects = number(start + kObjectCountAt, 8);
  root = number(start + kRootAt, 8);
  const std::uint64_t table = number(start + kTableAt, 8);
  if (fOffsetSize < 1 || fOffsetSize > 8 || fReferenceSize < 1 || fReferenceSize > 8) {
    return fail(start + kOffsetSizeAt, "a size in the trailer that is not 1 to 8");
  }
  if (table < kHeadSize || table > start || fObjects > (start - table) / fOffsetSize) {
    return fail(start + kObjectCountAt, "a table of offsets that does not fit");
  }
  fTable = table;
  return true;
}

bool Objects::find(std::uint64_t index, ObjectHead& out) {
  if (index >= fObjects) {
    return fail(fBytes.size() - kTrailerSize, "a reference to an object that there is not");
  }
  const std::size_t entry = fTable + index * fOffsetSize;
  const std::uint64_t offset = number(entry, fOffsetSize);
  if (offset < kHeadSize || offset >= fTable) {
    return fail(entry, "an offset outside the objects");
  }
  return head(offset, out);
}

bool Objects::head(std::size_t offset, ObjectHead& out) {
  const std::uint64_t marker = number(offset, 1);
  out.kind = static_cast<std::uint8_t>(marker >> 4U);
  out.low = static_cast<std::uint8_t>(marker & 0x0FU);
  out.count = out.low;
  out.at = offset + 1;
  out.offset = offset;
  const bool counted = out.kind >= kData;
  if (!counted || out.low != kCountFollows) {
    return true;
  }
  const std::uint64_t size = out.at < fTable ? number(out.at, 1) : 0;
  if (size >> 4U != kInteger || (size & 0x0FU) > 3 || (1U << (size & 0x0FU)) > fTable - out.at - 1) {
    return fail(offset, "a bad count");
  }
  out.count = number(out.at + 1, 1U << (size & 0x0FU));
  out.at += 1 + (1U << (size & 0x0FU));
  return true;
}

bool Objects::contents(const ObjectHead& head, std::size_t unit, std::string_view& out) {
  if (head.count > (fTable - head.at) / unit) {
    return fail(head.offset, "contents that reach beyond the objects");
  }
  out = fBytes.substr(head.at, head.count * unit);
  return fBudget.take(out.size()) || fail(head.offset, "too many values");
}

bool Objects::count(const ObjectHead& head) {
  return fBudget.take() || fail(head.offset, "too many values");
}

std::uint64_t Objects::number(std::size_t at, std::size_t size) const {
  std::uint64_t value = 0;
  for (const char c : fBytes.substr(at, size)) {
    value = value << 8U | static_cast<unsigned char>(c);
  }
  return value;
}

std::uint64_t Objects::reference(std::string_view references, std::uint64_t position) const {
  const auto start = static_cast<std::size_t>(references.data() - fBytes.data());
  return number(start + position * fReferenceSize, fReferenceSize);
}

}  // namespace veltrix::plist::binary
