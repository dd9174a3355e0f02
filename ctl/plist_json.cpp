#include "ctl/plist_json.h"

#include <cmath>

#include "platform/base64.h"
#include "platform/plist_date.h"

namespace veltrix::ctl {
namespace {

Json jsonOfArray(const plist::Array& array) {
  Json json = Json::array();
  for (const auto& element : array.items()) {
    json.push_back(jsonOf(element));
  }
  return json;
}

Json jsonOfDictionary(const plist::Dictionary& dictionary) {
  Json json = Json::object();
  for (const auto& key : dictionary.keys()) {
    json[key] = jsonOf(dictionary.get(key));
  }
  return json;
}

}  // namespace

Json jsonOf(const plist::Value& value) {
  switch (value.type()) {
    case plist::Type::kBoolean:
      return value.asBool();
    case plist::Type::kInteger:
      return value.asInt64();
    case plist::Type::kReal:
      return std::isfinite(value.asReal()) ? Json(value.asReal()) : Json(nullptr);
    case plist::Type::kString:
      return value.asString();
    case plist::Type::kData:
      return base64Encoded(value.asData());
    case plist::Type::kDate: {
      const auto text = plist::formatDate(value.asDate());
      return text ? Json(*text) : Json(nullptr);
    }
    case plist::Type::kArray:
      return jsonOfArray(value.asArray());
    case plist::Type::kDictionary:
      return jsonOfDictionary(value.asDictionary());
    case plist::Type::kMissing:
      break;
  }
  return nullptr;
}

std::string jsonText(const Json& json) {
  return json.dump(2, ' ', false, nlohmann::detail::error_handler_t::replace) + "\n";
}

}  // namespace veltrix::ctl
