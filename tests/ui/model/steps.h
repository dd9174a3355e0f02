#pragma once

#include <rapidcheck.h>
#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "tests/ui/model/document.h"

// Random sequences of what a person does. A step says by numbers which of the things that are there at that
// moment it takes, so that every sequence makes sense, also one from which steps have been left out.
namespace veltrix::model {

// What is done in a dialog. kPlace goes to one of the commands that have parameters, kParameter changes one
// of those that are shown.
enum class EditKind { kCategory, kCommand, kPlace, kLabel, kParameter };
inline constexpr int kEditKinds = 5;

struct EditStep {
  EditKind kind = EditKind::kCategory;
  int which = 0;
};

enum class Ending { kOkButton, kReturn, kCancelButton, kEscape };

enum class StepKind {
  kTab,
  kBox,
  kSlider,
  kDirection,
  kMenu,
  kEdit,
  kRestore,
  kScrollParameters,
  kPlug,
  kKind,
  kAccess,
  kResign,
  kLeaveAndReturn,
  kReopen,
};
inline constexpr int kStepKinds = 14;

struct Step {
  StepKind kind = StepKind::kTab;
  int which = 0;
  int what = 0;
  std::vector<EditStep> edits;  // in the dialog that the step opens
  Ending ending = Ending::kOkButton;
};

// One oddity of the document that the pane finds.
struct Tweak {
  int entry = 0;
  int where = 0;
  int what = 0;
  int value = 0;
};

struct Scenario {
  std::vector<Tweak> tweaks;
  std::vector<Step> steps;

  // The steps that were left out last while it was made shorter; it goes on from there.
  struct Cut {
    std::size_t from = 0;
    std::size_t length = 0;  // 0 for a scenario as it was made
  } cut;
};

// The factory document with the oddities.
Json startDocument(Json factory, const std::vector<Tweak>& tweaks);

// Scenarios of `least` to `most` steps, which shrink to fewer.
rc::Gen<Scenario> scenarios(int least, int most);

std::ostream& operator<<(std::ostream& out, const Scenario& scenario);

}  // namespace veltrix::model
