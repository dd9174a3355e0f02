#include "settings/settings_schema.h"

#include <algorithm>
#include <array>

#include "settings/settings_keys.h"

namespace veltrix {
namespace {

using plist::Type;

struct KeyType {
  std::string_view key;
  Type type;
};

constexpr std::array kTypes = {
    KeyType{keys::kVersion, Type::kInteger},        KeyType{keys::kParamUi, Type::kBoolean},
    KeyType{keys::kDictVersion, Type::kInteger},    KeyType{keys::kDriverEnabled, Type::kBoolean},
    KeyType{keys::kVendorId, Type::kInteger},       KeyType{keys::kProductId, Type::kInteger},
    KeyType{keys::kVersionMin, Type::kInteger},     KeyType{keys::kVersionMax, Type::kInteger},
    KeyType{keys::kSpeed, Type::kInteger},          KeyType{keys::kAccelerate, Type::kBoolean},
    KeyType{keys::kAcceleration, Type::kReal},      KeyType{keys::kJump, Type::kBoolean},
    KeyType{keys::kSlow, Type::kBoolean},           KeyType{keys::kSlowKeys, Type::kInteger},
    KeyType{keys::kSingle, Type::kBoolean},         KeyType{keys::kSingleKeys, Type::kInteger},
    KeyType{keys::kInertialScroll, Type::kBoolean}, KeyType{keys::kInvertWheel, Type::kBoolean},
    KeyType{keys::kInvertX, Type::kBoolean},        KeyType{keys::kInvertY, Type::kBoolean},
    KeyType{keys::kInvertZ, Type::kBoolean},        KeyType{keys::kSwapXy, Type::kBoolean},
    KeyType{keys::kCommand, Type::kInteger},        KeyType{keys::kLabel, Type::kString},
    KeyType{keys::kModifiers, Type::kInteger},      KeyType{keys::kKeyCode, Type::kInteger},
    KeyType{keys::kCount, Type::kInteger},          KeyType{keys::kText, Type::kString},
    KeyType{keys::kBundleId, Type::kString},        KeyType{keys::kTriggerTime, Type::kInteger},
    KeyType{keys::kTimeDecay, Type::kInteger},      KeyType{keys::kTimeStop, Type::kInteger},
    KeyType{keys::kCountDecay, Type::kInteger},     KeyType{keys::kCountStop, Type::kInteger},
    KeyType{keys::kSnippetName, Type::kString},     KeyType{keys::kSnippetText, Type::kString},
};

}  // namespace

Type settingsTypeOf(std::string_view key) {
  const auto* found =
      std::find_if(kTypes.begin(), kTypes.end(), [=](const KeyType& known) { return known.key == key; });
  return found == kTypes.end() ? Type::kMissing : found->type;
}

const char* typeName(Type type) {
  switch (type) {
    case Type::kBoolean:
      return "a boolean";
    case Type::kInteger:
      return "an integer";
    case Type::kReal:
      return "a number";
    case Type::kString:
      return "a text";
    case Type::kData:
      return "data";
    case Type::kDate:
      return "a date";
    case Type::kArray:
      return "an array";
    case Type::kDictionary:
      return "a dictionary";
    case Type::kMissing:
      break;
  }
  return "nothing";
}

}  // namespace veltrix
