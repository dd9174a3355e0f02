#include "tests/ui/model/document.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <limits>

#include "ctl/plist_json.h"

namespace veltrix::model {
namespace {

const Json kNothing = Json::object();

const Json& valueOf(const Json& dictionary, const std::string& key) {
  static const Json kMissing;
  const auto found = dictionary.is_object() ? dictionary.find(key) : dictionary.end();
  return dictionary.is_object() && found != dictionary.end() ? *found : kMissing;
}

std::int64_t leadingInteger(const std::string& text) {
  long long number = 0;
  return std::sscanf(text.c_str(), "%18lld", &number) == 1 ? number : 0;  // NOLINT(cert-err34-c)
}

std::int64_t truncated(double real) {
  if (!std::isfinite(real)) {
    return 0;
  }
  constexpr double kLimit = 9.2e18;
  return static_cast<std::int64_t>(std::clamp(std::trunc(real), -kLimit, kLimit));
}

std::int64_t wideIntOf(const Json& value) {
  switch (value.type()) {
    case Json::value_t::boolean:
      return value.get<bool>() ? 1 : 0;
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
      return value.get<std::int64_t>();
    case Json::value_t::number_float:
      return truncated(value.get<double>());
    case Json::value_t::string:
      return leadingInteger(value.get<std::string>());
    default:
      return 0;
  }
}

bool sameModel(const Json& a, const Json& b) {
  return std::ranges::all_of(std::to_array({"device product id", "device version min", "device version max"}),
                             [&](const char* key) { return intOf(a, key) == intOf(b, key); });
}

}  // namespace

Json jsonOf(const plist::Value& value) {
  return Json(ctl::jsonOf(value));
}

plist::Value plistOf(const Json& json) {
  switch (json.type()) {
    case Json::value_t::boolean:
      return json.get<bool>();
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
      return json.get<std::int64_t>();
    case Json::value_t::number_float:
      return json.get<double>();
    case Json::value_t::string:
      return json.get<std::string>();
    case Json::value_t::array: {
      auto array = plist::Array::create();
      for (const Json& element : json) {
        array.append(plistOf(element));
      }
      return array;
    }
    case Json::value_t::object: {
      auto dictionary = plist::Dictionary::create();
      for (const auto& [key, value] : json.items()) {
        dictionary.set(key, plistOf(value));
      }
      return dictionary;
    }
    default:
      return {};
  }
}

std::int32_t intOf(const Json& dictionary, const std::string& key) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(wideIntOf(valueOf(dictionary, key))));
}

std::uint16_t lowBitsOf(const Json& dictionary, const std::string& key) {
  return static_cast<std::uint16_t>(wideIntOf(valueOf(dictionary, key)));
}

bool boolOf(const Json& dictionary, const std::string& key) {
  const Json& value = valueOf(dictionary, key);
  return value.is_number_float() ? value.get<double>() != 0 : wideIntOf(value) != 0;
}

double realOf(const Json& dictionary, const std::string& key) {
  const Json& value = valueOf(dictionary, key);
  return value.is_number_float() ? value.get<double>() : static_cast<double>(wideIntOf(value));
}

std::string textOf(const Json& dictionary, const std::string& key) {
  const Json& value = valueOf(dictionary, key);
  return value.is_string() ? value.get<std::string>() : std::string();
}

std::string buttonName(int button) {
  return (button < 10 ? "0" : "") + std::to_string(button);
}

bool hasAction(const Json& entry, int button) {
  return valueOf(valueOf(entry, "buttons"), buttonName(button)).is_object();
}

const Json& actionOf(const Json& entry, int button) {
  return hasAction(entry, button) ? entry.at("buttons").at(buttonName(button)) : kNothing;
}

Json merged(Json user, const Json& factory) {
  for (const Json& own : factory.at("devices")) {
    Json& entries = user.at("devices");
    const auto twin = std::ranges::find_if(entries, [&](const Json& each) { return sameModel(each, own); });
    if (twin == entries.end()) {
      entries.push_back(own);
    } else if (!twin->contains("param") && own.contains("param")) {
      (*twin)["param"] = own.at("param");
    }
  }
  if (!user.contains("snippets") && factory.contains("snippets")) {
    user["snippets"] = factory.at("snippets");
  }
  return user;
}

bool same(const Json& a, const Json& b) {
  return a.dump() == b.dump();
}

std::string difference(const Json& expected, const Json& actual) {
  const Json steps = Json::diff(expected, actual);
  return steps.empty() ? "types differ: " + expected.dump() + " and " + actual.dump() : steps.dump();
}

}  // namespace veltrix::model
