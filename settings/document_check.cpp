#include "settings/document_check.h"

#include <array>
#include <cstdint>
#include <map>

#include "settings/action_check.h"
#include "settings/settings_keys.h"
#include "settings/settings_rules.h"
#include "settings/settings_schema.h"

namespace veltrix {
namespace {

using plist::Array;
using plist::Dictionary;
using plist::Value;

constexpr std::int64_t kLargestId = 0xFFFF;
constexpr std::size_t kSnippetCount = 10;

std::string insteadOf(const Value& value, const char* wanted) {
  return std::string("is ") + typeName(value.type()) + " instead of " + wanted;
}

void checkOptions(const Dictionary& options, const ProblemList& problems) {
  problems.checkRange(options, keys::kSpeed, 80, 6400);
  problems.checkType(options, keys::kAcceleration);
  const double factor = options.realFor(keys::kAcceleration);
  if (!(factor >= 0.0 && factor <= 4.0)) {
    problems.at(keys::kAcceleration).add("is outside 0 to 4");
  }
  problems.checkModifiers(options, keys::kSlowKeys);
  problems.checkModifiers(options, keys::kSingleKeys);
  for (const char* key :
       {keys::kAccelerate, keys::kJump, keys::kSlow, keys::kSingle, keys::kInertialScroll, keys::kInvertWheel,
        keys::kInvertX, keys::kInvertY, keys::kInvertZ, keys::kSwapXy}) {
    problems.checkType(options, key);
  }
}

void checkIds(const Dictionary& entry, const ProblemList& problems) {
  for (const char* key : {keys::kVendorId, keys::kProductId, keys::kVersionMin, keys::kVersionMax}) {
    problems.checkRange(entry, key, 0, kLargestId);
  }
  const auto versionMax = entry.uint16For(keys::kVersionMax);
  if (versionMax != 0 && versionMax < entry.uint16For(keys::kVersionMin)) {
    problems.at(keys::kVersionMax).add("is below \"device version min\": the entry fits no device");
  }
}

void checkParam(const Dictionary& param, const ProblemList& problems) {
  for (const char* key :
       {keys::kTriggerTime, keys::kTimeDecay, keys::kTimeStop, keys::kCountDecay, keys::kCountStop}) {
    problems.checkRange(param, key, INT32_MIN, INT32_MAX);
  }
}

// Checks a dictionary inside an entry by `check`; a missing one is the business of the entry.
void checkInside(const Dictionary& entry, const char* key, const ProblemList& problems,
                 void (*check)(const Dictionary&, const ProblemList&)) {
  const Value value = entry.get(key);
  if (value.asDictionary()) {
    check(value.asDictionary(), problems.at(key));
  } else if (!value.isMissing()) {
    problems.at(key).add(insteadOf(value, "a dictionary"));
  }
}

void checkEntry(const Dictionary& entry, const ProblemList& problems) {
  for (const char* key : {keys::kDriverEnabled, keys::kDictVersion, keys::kVendorId, keys::kProductId,
                          keys::kVersionMin, keys::kVersionMax, keys::kButtons, keys::kOptions}) {
    if (!entry.contains(key)) {
      problems.add(std::string("has no \"") + key + "\"");
    }
  }
  problems.checkRange(entry, keys::kDictVersion, 1, 1);
  problems.checkType(entry, keys::kDriverEnabled);
  checkIds(entry, problems);
  checkInside(entry, keys::kOptions, problems, checkOptions);
  checkInside(entry, keys::kButtons, problems, checkButtons);
  checkInside(entry, keys::kParam, problems, checkParam);
  if (entry.dictionaryFor(keys::kButtons) && VeltrixFindClickInSettings(entry, 0, 3, -1) < 0) {
    problems.at(keys::kButtons).add("none of the buttons 00 to 03 is the plain primary click");
  }
}

void checkDevices(const Array& devices, const ProblemList& problems) {
  std::map<std::array<std::int32_t, 3>, std::size_t> seen;
  for (std::size_t i = 0; i < devices.count(); ++i) {
    const ProblemList here = problems.at(std::to_string(i));
    const auto entry = devices.at(i).asDictionary();
    if (!entry) {
      here.add(insteadOf(devices.at(i), "a dictionary"));
      continue;
    }
    checkEntry(entry, here);
    const std::array ids = {entry.int32For(keys::kProductId), entry.int32For(keys::kVersionMin),
                            entry.int32For(keys::kVersionMax)};
    const auto [earlier, isNew] = seen.try_emplace(ids, i);
    if (!isNew) {
      here.add("has the product and versions of devices/" + std::to_string(earlier->second) +
               ", which comes before it");
    }
  }
}

void checkSnippets(const Array& snippets, const ProblemList& problems) {
  for (std::size_t i = 0; i < snippets.count(); ++i) {
    const ProblemList here = problems.at(std::to_string(i));
    const auto snippet = snippets.at(i).asDictionary();
    if (!snippet) {
      here.add(insteadOf(snippets.at(i), "a dictionary"));
      continue;
    }
    here.checkType(snippet, keys::kSnippetName);
    here.checkType(snippet, keys::kSnippetText);
    if (i >= kSnippetCount) {
      here.add("is beyond the tenth snippet and never typed");
    }
  }
}

}  // namespace

std::vector<DocumentProblem> checkSettingsDocument(const Value& root) {
  std::vector<DocumentProblem> found;
  const ProblemList problems(found, "");
  const auto document = root.asDictionary();
  if (!document) {
    problems.add(insteadOf(root, "a dictionary"));
    return found;
  }
  if (!document.contains(keys::kVersion)) {
    problems.add("has no \"version\"");
  }
  problems.checkRange(document, keys::kVersion, 2, INT32_MAX);
  problems.checkType(document, keys::kParamUi);
  const Value devices = document.get(keys::kDevices);
  if (!devices.asArray()) {
    problems.at(keys::kDevices).add(insteadOf(devices, "an array"));
  } else if (devices.asArray().count() == 0) {
    problems.at(keys::kDevices).add("is empty");
  }
  checkDevices(devices.asArray(), problems.at(keys::kDevices));
  const Value snippets = document.get(keys::kSnippets);
  if (!snippets.isMissing() && !snippets.asArray()) {
    problems.at(keys::kSnippets).add(insteadOf(snippets, "an array"));
  }
  checkSnippets(snippets.asArray(), problems.at(keys::kSnippets));
  return found;
}

}  // namespace veltrix
