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
inline constexpr std::size_t kMaximumFileBytes = 64U * 1024U * 1024U;

struct Document {
  Value root;
  Format format = Format::kXml;
};

// Reads XML, binary or the old text form, in UTF-8 (with or without a byte-order mark) or UTF-16. Every
// container of the result is new and writable. Bytes that are no property list, or one over a limit (nesting,
// size, nodes that a binary file reaches by reference), give an error whose offset is the place in `bytes`.
Result<Document> read(std::string_view bytes);

// Reads a whole file; an error carries errno when the file could not be read, the offset when it could not be
// parsed.
Result<Document> readFile(const std::string& path);

// Version 1.0 XML with tabs and a final newline. Fails on a missing root, nesting over the limit (which a
// container that holds itself reaches), and strings that are not UTF-8 or hold characters that XML cannot
// carry.
Result<std::string> writeXml(const Value& root);

// The version 00 binary form. Fails like writeXml, except that it carries every character.
Result<std::string> writeBinary(const Value& root);

}  // namespace veltrix::plist
