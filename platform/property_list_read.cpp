#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <utility>

#include "platform/property_list_binary.h"
#include "platform/property_list_binary_reader.h"
#include "platform/property_list_io.h"
#include "platform/property_list_text_reader.h"
#include "platform/property_list_xml_reader.h"
#include "platform/text_encoding.h"

namespace veltrix::plist {

namespace {

// How the characters of a document are stored, and how many bytes of it say so.
struct Encoding {
  std::optional<ByteOrder> utf16;
  std::size_t markSize = 0;
};

Encoding encodingOf(std::string_view bytes) {
  const auto startsWith = [bytes](std::string_view start) { return bytes.substr(0, start.size()) == start; };
  if (startsWith("\xEF\xBB\xBF")) {
    return {std::nullopt, 3};
  }
  if (startsWith("\xFE\xFF")) {
    return {ByteOrder::kBigEndian, 2};
  }
  if (startsWith("\xFF\xFE")) {
    return {ByteOrder::kLittleEndian, 2};
  }
  // Without a mark: every document starts with an ASCII character, which leaves one of two bytes zero.
  if (bytes.size() >= 2 && bytes[0] == '\0' && bytes[1] != '\0') {
    return {ByteOrder::kBigEndian, 0};
  }
  if (bytes.size() >= 2 && bytes[0] != '\0' && bytes[1] == '\0') {
    return {ByteOrder::kLittleEndian, 0};
  }
  return {};
}

// Both XML and the old form's data start with '<', but only data goes on with nothing but digits up to '>'.
bool looksLikeXml(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos || text[first] != '<') {
    return false;
  }
  const std::size_t end = text.find_first_not_of("0123456789abcdefABCDEF \t\r\n", first + 1);
  return end != std::string_view::npos && text[end] != '>';
}

Result<Document> documentOf(Result<Value> root, Format format) {
  if (!root) {
    return root.error();
  }
  return Document{std::move(root.value()), format};
}

Result<Document> readCharacters(std::string_view utf8) {
  if (utf8.find_first_not_of(" \t\r\n") == std::string_view::npos) {
    return Error{0, "an empty document", 0};
  }
  if (looksLikeXml(utf8)) {
    return documentOf(readXml(utf8), Format::kXml);
  }
  return documentOf(readText(utf8), Format::kText);
}

Result<Document> readUtf16(std::string_view bytes, ByteOrder order) {
  std::string utf8;
  utf8.reserve(bytes.size());
  if (const auto bad = appendUtf16AsUtf8(bytes, order, utf8)) {
    return Error{0, "bad UTF-16", *bad};
  }
  Result<Document> result = readCharacters(utf8);
  if (!result && result.error().offset) {
    Error error = result.error();
    error.offset = 2 * utf16Units(utf8, *error.offset);
    return error;
  }
  return result;
}

class Descriptor {
 public:
  explicit Descriptor(int number) : fNumber(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (fNumber >= 0) {
      close(fNumber);
    }
  }
  int number() const { return fNumber; }

 private:
  int fNumber;
};

Error systemError(int code, const std::string& path) {
  return Error{code, "cannot read " + path + ": " + std::strerror(code), std::nullopt};
}

Error tooLarge() {
  return Error{EFBIG, "larger than 64 MiB", kMaximumFileBytes};
}

// The whole contents; at most one byte more than the limit.
Result<std::string> contentsOf(const std::string& path) {
  // A pipe must not hold the caller up, so nothing waits and only regular files pass.
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status = {};
  if (file.number() < 0 || fstat(file.number(), &status) != 0) {
    return systemError(errno, path);
  }
  if (!S_ISREG(status.st_mode)) {
    return systemError(S_ISDIR(status.st_mode) ? EISDIR : EINVAL, path);
  }
  if (static_cast<std::uint64_t>(status.st_size) > kMaximumFileBytes) {
    return tooLarge();
  }
  // One byte more than the size, so that the last read finds the end without growing.
  std::string contents(static_cast<std::size_t>(status.st_size) + 1, '\0');
  std::size_t filled = 0;
  while (filled <= kMaximumFileBytes) {
    if (filled == contents.size()) {
      contents.resize(contents.size() * 2);
    }
    const ssize_t count = ::read(file.number(), contents.data() + filled, contents.size() - filled);
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count < 0) {
      return systemError(errno, path);
    }
    if (count == 0) {
      break;
    }
    filled += static_cast<std::size_t>(count);
  }
  contents.resize(filled);
  return contents;
}

}  // namespace

Result<Document> read(std::string_view bytes) {
  if (bytes.size() > kMaximumFileBytes) {
    return tooLarge();
  }
  if (bytes.substr(0, binary::kMagic.size()) == binary::kMagic) {
    return documentOf(readBinary(bytes), Format::kBinary);
  }
  const Encoding encoding = encodingOf(bytes);
  const std::string_view characters = bytes.substr(encoding.markSize);
  Result<Document> result =
      encoding.utf16 ? readUtf16(characters, *encoding.utf16) : readCharacters(characters);
  if (!result && result.error().offset) {
    Error error = result.error();
    error.offset = *error.offset + encoding.markSize;
    return error;
  }
  return result;
}

Result<Document> readFile(const std::string& path) {
  const Result<std::string> contents = contentsOf(path);
  if (!contents) {
    return contents.error();
  }
  return read(contents.value());
}

}  // namespace veltrix::plist
