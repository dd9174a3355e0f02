#include "ctl/value_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "ctl/outcome.h"
#include "ctl/plist_json.h"
#include "settings/settings_schema.h"

namespace veltrix::ctl {
namespace {

using plist::Type;
using plist::Value;

Error isNot(std::string_view text, const std::string& wanted) {
  return {kBadInput, "\"" + std::string(text) + "\" is not " + wanted, {}};
}

std::string realText(double number) {
  std::array<char, 32> text{};
  const auto [end, problem] = std::to_chars(text.data(), text.data() + text.size(), number);
  return problem == std::errc() ? std::string(text.data(), end) : std::string();
}

Result<Value> parseBoolean(std::string_view text) {
  for (const char* word : {"true", "yes", "on", "1"}) {
    if (text == word) {
      return Value(true);
    }
  }
  for (const char* word : {"false", "no", "off", "0"}) {
    if (text == word) {
      return Value(false);
    }
  }
  return isNot(text, "a boolean: true or false");
}

Result<Value> parseInteger(std::string_view text) {
  const bool isHex = text.starts_with("0x") || text.starts_with("0X");
  const std::string_view digits = isHex ? text.substr(2) : text;
  std::int64_t number = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, problem] = std::from_chars(digits.data(), end, number, isHex ? 16 : 10);
  if (digits.empty() || stop != end || problem != std::errc() || (isHex && number < 0)) {
    return isNot(text, "an integer");
  }
  return Value(number);
}

Result<Value> parseReal(std::string_view text) {
  double number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, problem] = std::from_chars(text.data(), end, number);
  if (text.empty() || stop != end || problem != std::errc() || !std::isfinite(number)) {
    return isNot(text, "a number");
  }
  return Value(number);
}

}  // namespace

std::string valueText(const Value& value) {
  switch (value.type()) {
    case Type::kString:
      return value.asString();
    case Type::kReal:
      return realText(value.asReal());
    default:
      return jsonOf(value).dump(-1, ' ', false, nlohmann::detail::error_handler_t::replace);
  }
}

std::string quotedValueText(const Value& value) {
  if (value.type() != Type::kString) {
    return valueText(value);
  }
  std::string text = jsonText(jsonOf(value));
  text.pop_back();  // the line's end
  return text;
}

std::string valueLines(const Value& value, const std::string& prefix) {
  const std::string below = prefix.empty() ? "" : prefix + "/";
  std::string lines;
  if (const auto dictionary = value.asDictionary()) {
    for (const auto& key : dictionary.keys()) {
      lines += valueLines(dictionary.get(key), below + key);
    }
  } else if (const auto array = value.asArray()) {
    for (std::size_t i = 0; i < array.count(); ++i) {
      lines += valueLines(array.at(i), below + std::to_string(i));
    }
  } else {
    lines = prefix + " = " + quotedValueText(value) + "\n";
  }
  return lines;
}

Result<Value> parseValue(std::string_view text, Type type) {
  switch (type) {
    case Type::kBoolean:
      return parseBoolean(text);
    case Type::kInteger:
      return parseInteger(text);
    case Type::kReal:
      return parseReal(text);
    case Type::kString:
      return Value(text);
    default:
      return Error{
          kBadInput, std::string("only single values can be set, and this is ") + typeName(type), {}};
  }
}

}  // namespace veltrix::ctl
