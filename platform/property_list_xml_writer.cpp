#include <charconv>
#include <optional>
#include <utility>

#include "platform/base64.h"
#include "platform/plist_date.h"
#include "platform/property_list_io.h"
#include "platform/property_list_limits.h"
#include "platform/property_list_numbers.h"
#include "platform/property_list_xml_text.h"

namespace veltrix::plist {

namespace {

constexpr std::string_view kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";
constexpr std::string_view kTail = "</plist>\n";
constexpr std::size_t kDataLine = 68;

class Writer {
 public:
  Result<std::string> run(const Value& root);

 private:
  bool fail(std::string message);
  void indent(std::size_t depth) { fOut.append(depth, '\t'); }
  void element(std::string_view name, std::string_view contents);
  bool text(std::string_view name, std::string_view contents);
  bool value(const Value& value, std::size_t depth);
  bool container(const Value& value, std::size_t depth);
  bool scalar(const Value& value);
  void data(const Data& data, std::size_t depth);
  bool date(Date date);

  std::string fOut;
  std::optional<Error> fError;
  Budget fBudget;
};

bool Writer::fail(std::string message) {
  fError = Error{0, std::move(message), std::nullopt};
  return false;
}

Result<std::string> Writer::run(const Value& root) {
  fOut = kHead;
  if (!value(root, 0)) {
    return *fError;
  }
  fOut.append(kTail);
  if (fOut.size() > kMaximumFileBytes) {
    return Error{0, "larger than 64 MiB", std::nullopt};
  }
  return std::move(fOut);
}

void Writer::element(std::string_view name, std::string_view contents) {
  fOut.append("<").append(name).append(">").append(contents).append("</").append(name).append(">\n");
}

bool Writer::text(std::string_view name, std::string_view contents) {
  if (!fBudget.take(contents.size())) {
    return fail("too many values");
  }
  if (firstBadXmlCharacter(contents)) {
    return fail("a string that is not UTF-8 or has a character that XML cannot hold");
  }
  fOut.append("<").append(name).append(">");
  appendEscaped(contents, fOut);
  fOut.append("</").append(name).append(">\n");
  return true;
}

// Writes whole lines; `depth` is the indentation.
bool Writer::value(const Value& value, std::size_t depth) {
  indent(depth);
  if (const std::string* string = value.stringIf()) {
    return text("string", *string);
  }
  const Data* bytes = value.dataIf();
  if (!fBudget.take(bytes != nullptr ? bytes->size() : 0)) {
    return fail("too many values");
  }
  if (bytes != nullptr) {
    data(*bytes, depth);
    return true;
  }
  const bool isContainer = value.type() == Type::kArray || value.type() == Type::kDictionary;
  return isContainer ? container(value, depth) : scalar(value);
}

bool Writer::container(const Value& value, std::size_t depth) {
  if (depth >= kMaximumNesting) {
    return fail("nested too deeply, or a container that holds itself");
  }
  const bool isArray = value.type() == Type::kArray;
  const std::string_view name = isArray ? "array" : "dict";
  const Array array = value.asArray();
  const Dictionary dictionary = value.asDictionary();
  if (array.count() + dictionary.count() == 0) {
    fOut.append("<").append(name).append("/>\n");
    return true;
  }
  fOut.append("<").append(name).append(">\n");
  for (const Value& item : array.items()) {
    if (!this->value(item, depth + 1)) {
      return false;
    }
  }
  for (const Entry& entry : dictionary.entries()) {
    indent(depth + 1);
    if (!text("key", entry.key) || !this->value(entry.value, depth + 1)) {
      return false;
    }
  }
  indent(depth);
  fOut.append("</").append(name).append(">\n");
  return true;
}

bool Writer::scalar(const Value& value) {
  char digits[24];
  switch (value.type()) {
    case Type::kBoolean:
      fOut.append(value.asBool() ? "<true/>\n" : "<false/>\n");
      return true;
    case Type::kInteger: {
      const auto result = std::to_chars(digits, digits + sizeof digits, value.asInt64());
      element("integer", {digits, static_cast<std::size_t>(result.ptr - digits)});
      return true;
    }
    case Type::kReal:
      element("real", formatReal(value.asReal()));
      return true;
    case Type::kDate:
      return date(value.asDate());
    default:
      return fail("a missing value");
  }
}

void Writer::data(const Data& data, std::size_t depth) {
  const std::string encoded = base64Encoded(data);
  fOut.append("<data>\n");
  for (std::size_t at = 0; at < encoded.size(); at += kDataLine) {
    indent(depth);
    fOut.append(std::string_view(encoded).substr(at, kDataLine)).append("\n");
  }
  indent(depth);
  fOut.append("</data>\n");
}

bool Writer::date(Date date) {
  const std::optional<std::string> formatted = formatDate(date);
  if (!formatted) {
    return fail("a date that has no four-digit year");
  }
  element("date", *formatted);
  return true;
}

}  // namespace

Result<std::string> writeXml(const Value& root) {
  return Writer().run(root);
}

}  // namespace veltrix::plist
