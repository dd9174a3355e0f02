#pragma once

// The keys of the settings document, one constant each. docs/settings-file.md describes their values.
namespace veltrix::keys {

// The document.
inline constexpr const char* kVersion = "version";
inline constexpr const char* kDevices = "devices";
inline constexpr const char* kSnippets = "snippets";
inline constexpr const char* kParamUi = "paramUI";
inline constexpr const char* kSupport = "support";  // only in a report, never in the settings file

// A device entry.
inline constexpr const char* kDictVersion = "dict version";
inline constexpr const char* kDriverEnabled = "driver enabled";
inline constexpr const char* kVendorId = "device vendor id";
inline constexpr const char* kProductId = "device product id";
inline constexpr const char* kVersionMin = "device version min";
inline constexpr const char* kVersionMax = "device version max";
inline constexpr const char* kOptions = "options";
inline constexpr const char* kButtons = "buttons";
inline constexpr const char* kParam = "param";

// The options of an entry.
inline constexpr const char* kSpeed = "speed";
inline constexpr const char* kAccelerate = "accelerate";
inline constexpr const char* kAcceleration = "acceleration";
inline constexpr const char* kJump = "jump";
inline constexpr const char* kSlow = "slow";
inline constexpr const char* kSlowKeys = "slow keys";
inline constexpr const char* kSingle = "single";
inline constexpr const char* kSingleKeys = "single keys";
inline constexpr const char* kInertialScroll = "inertial scroll";
inline constexpr const char* kInvertWheel = "invert wheel";
inline constexpr const char* kInvertX = "invert x";
inline constexpr const char* kInvertY = "invert y";
inline constexpr const char* kInvertZ = "invert z";
inline constexpr const char* kSwapXy = "swap xy";

// An action.
inline constexpr const char* kCommand = "cmd";
inline constexpr const char* kLabel = "label";
inline constexpr const char* kModifiers = "mod";
inline constexpr const char* kKeyCode = "key";
inline constexpr const char* kCount = "cnt";
inline constexpr const char* kText = "str";
inline constexpr const char* kBundleId = "bndl";

// The button of the scroll wheel or ring.
inline constexpr const char* kWheelButton = "12";

// The scroll parameters of an entry.
inline constexpr const char* kTriggerTime = "triggerTime";
inline constexpr const char* kTimeDecay = "timeDecay";
inline constexpr const char* kTimeStop = "timeStop";
inline constexpr const char* kCountDecay = "countDecay";
inline constexpr const char* kCountStop = "countStop";

// A snippet.
inline constexpr const char* kSnippetName = "name";
inline constexpr const char* kSnippetText = "text";

}  // namespace veltrix::keys
