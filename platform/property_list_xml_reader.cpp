#include "platform/property_list_xml_reader.h"

#include <algorithm>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <utility>

#include "platform/base64.h"
#include "platform/plist_date.h"
#include "platform/property_list_limits.h"
#include "platform/property_list_numbers.h"
#include "platform/property_list_xml_text.h"

namespace veltrix::plist {

namespace {

using pugi::xml_node;

// Character references are resolved here and not by the parser, which would let unknown ones pass as text.
constexpr unsigned kParsing = pugi::parse_cdata | pugi::parse_ws_pcdata | pugi::parse_eol |
                              pugi::parse_declaration | pugi::parse_fragment;

bool isBlankText(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

bool isText(const xml_node& node) {
  return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

std::size_t offsetOf(const xml_node& node) {
  const std::ptrdiff_t offset = node.offset_debug();
  if (offset <= 0) {
    return 0;
  }
  // An element is known by the place of its name, which has '<' before it.
  return static_cast<std::size_t>(offset) - (node.type() == pugi::node_element ? 1U : 0U);
}

class Reader {
 public:
  Result<Value> run(std::string_view utf8);

 private:
  bool fail(std::size_t offset, std::string message);
  bool fail(const xml_node& node, std::string message) { return fail(offsetOf(node), std::move(message)); }
  bool checkDeclaration(const xml_node& node);
  bool soleElement(xml_node parent, xml_node& element);
  bool value(const xml_node& element, std::size_t depth, Value& out);
  bool array(const xml_node& element, std::size_t depth, Value& out);
  bool dictionary(const xml_node& element, std::size_t depth, Value& out);
  bool scalar(const xml_node& element, std::string_view name, Value& out);
  bool skipBlank(const xml_node& node, bool& skipped);
  bool text(const xml_node& element, std::string& out);

  std::optional<Error> fError;
  Budget fBudget;
};

bool Reader::fail(std::size_t offset, std::string message) {
  fError = Error{0, std::move(message), offset};
  return false;
}

Result<Value> Reader::run(std::string_view utf8) {
  if (const auto bad = firstBadXmlCharacter(utf8)) {
    return Error{0, "not UTF-8, or a character that XML cannot hold", *bad};
  }
  pugi::xml_document document;
  const pugi::xml_parse_result parsed =
      document.load_buffer(utf8.data(), utf8.size(), kParsing, pugi::encoding_utf8);
  if (!parsed) {
    // The parser counts one too far when the end cuts an element short.
    const std::size_t offset = std::min(static_cast<std::size_t>(parsed.offset), utf8.size());
    return Error{0, std::string("bad XML: ") + parsed.description(), offset};
  }
  xml_node root;
  Value result;
  bool good = soleElement(document.root(), root);
  if (good && std::string_view(root.name()) == "plist") {
    good = soleElement(root, root);
  }
  if (!good || !value(root, 1, result)) {
    return *fError;
  }
  return result;
}

// The bytes are UTF-8 by now; a declaration of UTF-16 is what the document said before it was converted.
bool Reader::checkDeclaration(const xml_node& node) {
  std::string encoding = node.attribute("encoding").value();
  for (char& c : encoding) {
    c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
  }
  for (const std::string_view known :
       {"", "utf-8", "utf8", "us-ascii", "ascii", "utf-16", "utf-16le", "utf-16be"}) {
    if (encoding == known) {
      return true;
    }
  }
  return fail(node, "an encoding other than UTF-8 and UTF-16");
}

bool Reader::soleElement(xml_node parent, xml_node& element) {
  element = xml_node();
  for (const xml_node child : parent.children()) {
    bool skipped = false;
    if (child.type() == pugi::node_declaration && parent.type() == pugi::node_document) {
      skipped = true;
      if (!checkDeclaration(child)) {
        return false;
      }
    } else if (!skipBlank(child, skipped)) {
      return false;
    }
    if (skipped) {
      continue;
    }
    if (element) {
      return fail(child, "more than one value");
    }
    element = child;
  }
  return element || fail(parent, "no value");
}

bool Reader::value(const xml_node& element, std::size_t depth, Value& out) {
  const std::string_view name = element.name();
  if (name == "dict" || name == "array") {
    if (depth > kMaximumNesting) {
      return fail(element, "nested too deeply");
    }
    if (!fBudget.take()) {
      return fail(element, "too many values");
    }
    return name == "dict" ? dictionary(element, depth, out) : array(element, depth, out);
  }
  return scalar(element, name, out);
}

bool Reader::skipBlank(const xml_node& node, bool& skipped) {
  skipped = isText(node);
  if (skipped && !isBlankText(node.value())) {
    return fail(node, "text where a value belongs");
  }
  return true;
}

bool Reader::array(const xml_node& element, std::size_t depth, Value& out) {
  Array result = Array::create();
  for (const xml_node child : element.children()) {
    bool skipped = false;
    if (!skipBlank(child, skipped)) {
      return false;
    }
    Value item;
    if (skipped) {
      continue;
    }
    if (!value(child, depth + 1, item)) {
      return false;
    }
    result.append(std::move(item));
  }
  out = std::move(result);
  return true;
}

bool Reader::dictionary(const xml_node& element, std::size_t depth, Value& out) {
  Dictionary result = Dictionary::create();
  std::string key;
  xml_node keyElement;
  for (const xml_node child : element.children()) {
    bool skipped = false;
    if (!skipBlank(child, skipped)) {
      return false;
    }
    if (skipped) {
      continue;
    }
    const bool isKey = std::string_view(child.name()) == "key";
    if (isKey == static_cast<bool>(keyElement)) {
      return fail(child, isKey ? "a key without a value" : "a value without a key");
    }
    if (isKey) {
      keyElement = child;
      if (!text(child, key)) {
        return false;
      }
      continue;
    }
    Value item;
    if (!value(child, depth + 1, item)) {
      return false;
    }
    result.set(key, std::move(item));
    keyElement = xml_node();
  }
  if (keyElement) {
    return fail(keyElement, "a key without a value");
  }
  out = std::move(result);
  return true;
}

bool Reader::scalar(const xml_node& element, std::string_view name, Value& out) {
  std::string contents;
  if (!text(element, contents)) {
    return false;
  }
  if (name == "string") {
    out = std::move(contents);
  } else if (name == "integer") {
    const auto number = parseInteger(contents);
    out = number ? Value(*number) : Value();
  } else if (name == "real") {
    const auto number = parseReal(contents);
    out = number ? Value(*number) : Value();
  } else if (name == "true" || name == "false") {
    out = isBlankText(contents) ? Value(name == "true") : Value();
  } else if (name == "data") {
    auto data = base64Decoded(contents);
    out = data ? Value(std::move(*data)) : Value();
  } else if (name == "date") {
    const auto date = parseDate(contents);
    out = date ? Value(*date) : Value();
  } else {
    return fail(element, "an element that property lists do not have");
  }
  return !out.isMissing() || fail(element, "bad contents of <" + std::string(name) + ">");
}

// The characters of an element that holds no other.
bool Reader::text(const xml_node& element, std::string& out) {
  out.clear();
  for (const xml_node child : element.children()) {
    const std::string_view raw = child.value();
    if (child.type() == pugi::node_cdata) {
      out.append(raw);
    } else if (child.type() != pugi::node_pcdata) {
      return fail(child, "an element where text belongs");
    } else if (const auto bad = appendUnescaped(raw, out)) {
      return fail(offsetOf(child) + *bad, "a bad character reference");
    }
  }
  return fBudget.take(out.size()) || fail(element, "too many values");
}

}  // namespace

Result<Value> readXml(std::string_view utf8) {
  return Reader().run(utf8);
}

}  // namespace veltrix::plist
