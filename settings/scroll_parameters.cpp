#include "settings/scroll_parameters.h"

#include "settings/settings_keys.h"

namespace veltrix {

ScrollParameters scrollParametersOf(const plist::Dictionary& entry) {
  const plist::Dictionary param = entry.dictionaryFor(keys::kParam);
  return {.triggerTime = param.int32For(keys::kTriggerTime),
          .timeDecay = param.int32For(keys::kTimeDecay),
          .timeStop = param.int32For(keys::kTimeStop),
          .countDecay = param.int32For(keys::kCountDecay),
          .countStop = param.int32For(keys::kCountStop)};
}

}  // namespace veltrix
