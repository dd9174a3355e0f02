#include "tests/ui/model/steps.h"

#include <algorithm>
#include <ostream>

namespace veltrix::model {
namespace {

constexpr int kNumbers = 1000;
constexpr int kMostTweaks = 6;
constexpr int kMostEdits = 8;

// How often each kind comes, in their order.
constexpr int kStepWeights[kStepKinds] = {3, 12, 12, 4, 16, 16, 2, 5, 8, 5, 3, 3, 2, 1};

constexpr int kEditWeights[kEditKinds] = {1, 2, 3, 2, 5};

constexpr const char* kStepNames[kStepKinds] = {"open tab",         "click box",         "key on slider",
                                                "direction",        "choose in menu",    "edit button",
                                                "restore",          "parameters",        "plug",
                                                "choose kind",      "toggle access",     "resign active",
                                                "leave and return", "open the pane anew"};
constexpr const char* kEditNames[kEditKinds] = {"category", "command", "place", "label", "parameter"};
constexpr const char* kEndings[] = {"OK", "Return", "Cancel", "Escape"};

// Numbers from the generator's own source, so that a scenario is one plain value that shrinks as a whole.
class Dice {
 public:
  explicit Dice(const rc::Random& random) : fRandom(random) {}

  int below(int limit) { return static_cast<int>(fRandom.next() % static_cast<unsigned>(limit)); }

  int between(int least, int most) { return least + below(most - least + 1); }

  template <std::size_t N>
  int weighted(const int (&weights)[N]) {
    int sum = 0;
    for (const int weight : weights) {
      sum += weight;
    }
    int rest = below(sum);
    int which = 0;
    while (rest >= weights[which]) {
      rest -= weights[which++];
    }
    return which;
  }

 private:
  rc::Random fRandom;
};

EditStep makeEdit(Dice& dice) {
  return {static_cast<EditKind>(dice.weighted(kEditWeights)), dice.below(kNumbers)};
}

Step makeStep(Dice& dice) {
  Step step;
  step.kind = static_cast<StepKind>(dice.weighted(kStepWeights));
  step.which = dice.below(kNumbers);
  step.what = dice.below(kNumbers);
  step.ending = static_cast<Ending>(dice.below(4));
  if (step.kind == StepKind::kEdit || step.kind == StepKind::kScrollParameters) {
    step.edits.resize(static_cast<std::size_t>(dice.below(kMostEdits)));
    for (EditStep& edit : step.edits) {
      edit = makeEdit(dice);
    }
  }
  return step;
}

Scenario makeScenario(Dice dice, int least, int most) {
  Scenario scenario;
  scenario.tweaks.resize(static_cast<std::size_t>(dice.below(kMostTweaks + 1)));
  for (Tweak& tweak : scenario.tweaks) {
    tweak = {dice.below(kNumbers), dice.below(kNumbers), dice.below(kNumbers), dice.below(kNumbers)};
  }
  scenario.steps.resize(static_cast<std::size_t>(dice.between(least, most)));
  for (Step& step : scenario.steps) {
    step = makeStep(dice);
  }
  return scenario;
}

// What to leave out next: everything, halves, quarters and so on down to single steps. A sequence that still
// fails goes on with pieces of the same length, because longer ones have been tried; single steps are tried
// once more all around. Starting over each time would play a long sequence hundreds of times.
std::vector<Scenario::Cut> nextCuts(const Scenario& scenario) {
  const std::size_t count = scenario.steps.size();
  const Scenario::Cut& last = scenario.cut;
  std::vector<Scenario::Cut> cuts;
  std::size_t from = last.from;
  for (std::size_t length = last.length > 0 ? last.length : count; length > 0; length /= 2) {
    for (; from < count; from += length) {
      cuts.push_back({from, length});
    }
    from = 0;
  }
  for (from = 0; last.length == 1 && from < std::min(last.from, count); ++from) {
    cuts.push_back({from, 1});
  }
  return cuts;
}

Scenario without(Scenario scenario, const Scenario::Cut& cut) {
  const auto at = [&](std::size_t index) {
    return scenario.steps.begin() + static_cast<std::ptrdiff_t>(std::min(index, scenario.steps.size()));
  };
  scenario.steps.erase(at(cut.from), at(cut.from + cut.length));
  scenario.cut = cut;
  return scenario;
}

rc::Seq<Step> simplerStep(const Step& step) {
  return rc::seq::map(rc::shrink::removeChunks(step.edits), [step](std::vector<EditStep> edits) {
    Step simpler = step;
    simpler.edits = std::move(edits);
    return simpler;
  });
}

rc::Seq<Scenario> simpler(const Scenario& scenario) {
  const auto withCut = [scenario](const Scenario::Cut& cut) { return without(scenario, cut); };
  const auto withTweaks = [scenario](std::vector<Tweak> tweaks) {
    return Scenario{std::move(tweaks), scenario.steps, scenario.cut};
  };
  const auto withSteps = [scenario](std::vector<Step> steps) {
    return Scenario{scenario.tweaks, std::move(steps), scenario.cut};
  };
  return rc::seq::concat(rc::seq::map(rc::seq::fromContainer(nextCuts(scenario)), withCut),
                         rc::seq::map(rc::shrink::removeChunks(scenario.tweaks), withTweaks),
                         rc::seq::map(rc::shrink::eachElement(scenario.steps, simplerStep), withSteps));
}

void print(std::ostream& out, const Step& step) {
  out << kStepNames[static_cast<int>(step.kind)] << ' ' << step.which << ' ' << step.what;
  if (step.kind == StepKind::kEdit || step.kind == StepKind::kScrollParameters) {
    for (const EditStep& edit : step.edits) {
      out << ", " << kEditNames[static_cast<int>(edit.kind)] << ' ' << edit.which;
    }
    out << ", " << kEndings[static_cast<int>(step.ending)];
  }
}

}  // namespace

rc::Gen<Scenario> scenarios(int least, int most) {
  return [least, most](const rc::Random& random, int) {
    return rc::shrinkable::shrinkRecur(makeScenario(Dice(random), least, most),
                                       [](const Scenario& scenario) { return simpler(scenario); });
  };
}

std::ostream& operator<<(std::ostream& out, const Scenario& scenario) {
  out << scenario.tweaks.size() << " oddities, " << scenario.steps.size() << " steps:";
  for (const Step& step : scenario.steps) {
    out << "\n  ";
    print(out, step);
  }
  return out;
}

}  // namespace veltrix::model
