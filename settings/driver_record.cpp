#include "settings/driver_record.h"

#include <cstring>

#include "settings/button_key.h"
#include "settings/command_classes.h"
#include "settings/modifier_mask.h"
#include "settings/settings_keys.h"

namespace keys = veltrix::keys;
using veltrix::DriverRecord;
using veltrix::RecordAction;
using veltrix::plist::Dictionary;
using veltrix::plist::Value;

static_assert(veltrix::kButtonCount == veltrix::kRecordActions);

namespace {

constexpr std::uint32_t kReadableDictVersion = 1;
constexpr std::uint32_t kSlowestSpeed = 80;
constexpr std::uint32_t kFastestSpeed = 6400;
constexpr std::uint32_t kSpeedStep = 20;
constexpr double kStrongestAcceleration = 4.0;

std::uint8_t speedByte(std::uint32_t dotsPerInch) {
  if (dotsPerInch < kSlowestSpeed || dotsPerInch > kFastestSpeed) {
    return veltrix::kRecordNotSet;
  }
  return static_cast<std::uint8_t>(dotsPerInch / kSpeedStep);
}

std::uint8_t accelerationByte(const Value* stored, bool accelerate) {
  if (stored == nullptr) {
    return veltrix::kRecordNotSet;
  }
  const double factor = accelerate ? stored->asReal() : 0.0;
  // Written so that not-a-number, which compares false with everything, counts as out of range.
  if (!(factor >= 0.0 && factor <= kStrongestAcceleration)) {
    return veltrix::kRecordNotSet;
  }
  return static_cast<std::uint8_t>(static_cast<unsigned>(factor * 100.0));
}

std::uint8_t modifierByte(const Dictionary& options, const char* enabledKey, const char* maskKey) {
  if (!options.boolFor(enabledKey)) {
    return 0;
  }
  return static_cast<std::uint8_t>(options.uint32For(maskKey) >> veltrix::kModifierByteShift);
}

std::uint8_t axisFlags(const Dictionary& options) {
  unsigned flags = 0;
  flags |= options.boolFor(keys::kInvertX) ? veltrix::kInvertX : 0U;
  flags |= options.boolFor(keys::kInvertY) ? veltrix::kInvertY : 0U;
  flags |= options.boolFor(keys::kInvertZ) ? veltrix::kInvertZ : 0U;
  flags |= options.boolFor(keys::kSwapXy) ? veltrix::kSwapXY : 0U;
  return static_cast<std::uint8_t>(flags);
}

void convertOptions(const Dictionary& options, DriverRecord& record) {
  record.speed = speedByte(options.uint32For(keys::kSpeed));
  record.acceleration =
      accelerationByte(options.find(keys::kAcceleration), options.boolFor(keys::kAccelerate));
  record.axisFlags = axisFlags(options);
  record.invertWheel = options.boolFor(keys::kInvertWheel) ? 1 : 0;
  record.slowModifiers = modifierByte(options, keys::kSlow, keys::kSlowKeys);
  record.singleModifiers = modifierByte(options, keys::kSingle, keys::kSingleKeys);
  record.inertialScroll = options.boolFor(keys::kInertialScroll) ? 1 : 0;
}

RecordAction convertAction(const Dictionary& action) {
  RecordAction converted{};
  converted.command = action.uint16For(keys::kCommand);
  if (veltrix::isClickCommand(converted.command)) {
    converted.modifiers = action.uint16For(keys::kModifiers);
  } else if (veltrix::isScrollCommand(converted.command)) {
    converted.argument = action.uint16For(keys::kCount);
  } else if (converted.command == veltrix::kKeystrokeCommand) {
    converted.modifiers = action.uint16For(keys::kModifiers);
    converted.argument = action.uint16For(keys::kKeyCode);
  }
  return converted;
}

// Asks for the sixteen keys that count rather than walking the keys that are there: a file may hold any
// number of others.
std::uint8_t convertButtons(const Dictionary& buttons, const Dictionary& fallbackButtons,
                            DriverRecord& record) {
  std::uint8_t count = 0;
  for (std::uint8_t button = 0; button < veltrix::kButtonCount; ++button) {
    const char key[] = {static_cast<char>('0' + button / 10), static_cast<char>('0' + button % 10), '\0'};
    const Dictionary action = buttons.dictionaryFor(key);
    if (!action) {
      continue;
    }
    RecordAction converted = convertAction(action);
    if (converted.command == veltrix::kFallbackCommand && fallbackButtons) {
      converted = convertAction(fallbackButtons.dictionaryFor(key));
    }
    record.action[button] = converted;
    ++count;
  }
  return count;
}

}  // namespace

bool VeltrixAppPrefsDictToStruct(const Dictionary& entry, const Dictionary& fallback, DriverRecord* record) {
  const Dictionary& source = entry ? entry : fallback;
  if (!source || record == nullptr) {
    return false;
  }
  DriverRecord built{};
  built.speed = veltrix::kRecordNotSet;
  built.acceleration = veltrix::kRecordNotSet;
  const bool readable = source.uint32For(keys::kDictVersion) == kReadableDictVersion;
  if (readable) {
    built.driverEnabled = static_cast<std::uint8_t>(source.uint32For(keys::kDriverEnabled));
    if (const Dictionary options = source.dictionaryFor(keys::kOptions)) {
      convertOptions(options, built);
    }
    const Dictionary fallbackButtons = entry ? fallback.dictionaryFor(keys::kButtons) : Dictionary();
    built.actionCount = convertButtons(source.dictionaryFor(keys::kButtons), fallbackButtons, built);
  }
  std::memcpy(record, &built, sizeof built);
  return readable;
}
