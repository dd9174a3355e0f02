#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/property_list.h"
#include "util/result.h"

// Property lists as bytes. Reading recognises the form by itself; numbers never depend on the process's
// locale.
namespace veltrix::plist {

enum class Format { kXml, kBinary, kText };

inline constexpr std::size_t kMaximumNesting = 512;
inline constexpr std::size_t kMaximumFileBytes = std::size_t{64} * 1024 * 1024;
inline constexpr std::size_t kMaximumNodes = 4'000'000;  // values; long strings and data count as several

struct Document {
  Value root;
  Format format = Format::kXml;
};

// Reads XML, binary or the old text form, in UTF-8 (with or without a byte-order mark) or UTF-16. Every
// container of the result is new and writable. Bytes that are no property list, or one over a limit (nesting,
// size, values, values that a binary file reaches by reference), give an error whose offset is the place in
// `bytes`. Of a key that a dictionary has twice the last value counts.
Result<Document> read(std::string_view bytes);

// Reads a whole regular file; an error carries errno when the file could not be read, the offset when it
// could not be parsed.
Result<Document> readFile(const std::string& path);

// Version 1.0 XML with tabs and a final newline. Fails on a missing root, nesting, values or size over the
// limit (which a container that holds itself reaches), and strings that are not UTF-8 or hold characters that
// XML cannot carry, and on dates outside the years 0000 to 9999. Fractions of a second are not written.
Result<std::string> writeXml(const Value& root);

// The version 00 binary form; the same value always gives the same bytes. Fails like writeXml, except that it
// carries every character and every finite date.
Result<std::string> writeBinary(const Value& root);

}  // namespace veltrix::plist
