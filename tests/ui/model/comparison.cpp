#include "tests/ui/model/comparison.h"

#include <cstring>

#include "pane/controller.h"
#include "settings/driver_record.h"
#include "tests/ui/model/record.h"

namespace veltrix::model {
namespace {

void compareRecord(const Json& expectedEntries, const Json& entries, std::size_t which, Problems* problems) {
  const std::size_t other = (which + 1) % entries.size();
  const Record expected = recordOf(expectedEntries.at(which), expectedEntries.at(other));
  DriverRecord record{};
  static_assert(sizeof record == sizeof expected);
  VeltrixAppPrefsDictToStruct(plistOf(entries.at(which)).asDictionary(),
                              plistOf(entries.at(other)).asDictionary(), &record);
  Record actual{};
  std::memcpy(actual.data(), &record, sizeof record);
  compare(problems, "record", expected, actual);
}

bool anyClick(const Json& entry) {
  bool any = false;
  for (int button = 0; button <= 3; ++button) {
    any = any || intOf(actionOf(entry, button), "cmd") == 1;
  }
  return any;
}

}  // namespace

void compare(Problems* problems, const std::string& what, const Json& expected, const Json& actual) {
  if (!same(expected, actual)) {
    const bool large = expected.is_object() || expected.is_array();
    problems->push_back(
        what + ": " +
        (large ? difference(expected, actual) : "is " + actual.dump() + " instead of " + expected.dump()));
  }
}

void compareDocuments(const PaneModel& model, const Hands& hands, Problems* problems) {
  const Json file = hands.file();
  compare(problems, "file", model.file(), file);
  const Json entries = jsonOf(gVeltrixController->vtxGetSettingsArray());
  compare(problems, "memory", model.document().at("devices"), entries);
  const auto which = static_cast<std::size_t>(model.entryIndex());
  if (problems->empty()) {
    compareRecord(model.file().at("devices"), file.at("devices"),
                  which < file.at("devices").size() ? which : 0, problems);
  }
  if (model.deviceTab() != kNoDevice && !anyClick(entries.at(which))) {
    problems->push_back("none of the buttons 0 to 3 is a click");
  }
}

}  // namespace veltrix::model
