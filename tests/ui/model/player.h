#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "tests/ui/model/comparison.h"
#include "tests/ui/model/steps.h"

namespace veltrix::model {

// How often each kind of action was really done, and the warning sheet seen.
struct Tally {
  std::array<int, kStepKinds> steps{};
  std::array<int, kEditKinds> edits{};
  std::array<int, kPages> pages{};  // on which a parameter was changed
  int warnings = 0;
};

// Takes the steps of a scenario with the model and with the real pane, and compares both after every step and
// after everything that is done in a dialog.
class Player {
 public:
  // Adds to the tally. Both must outlive the player.
  Player(const Scenario& scenario, Tally* tally);

  // Stops where both differ first. Empty when they never do; else what was done, step by step, and what came
  // of it.
  std::string play();

 private:
  void take(const Step& step);
  void act(const Step& step);
  void check();

  void openTab(const Step& step);
  void clickBox(const Step& step);
  void pressSlider(const Step& step);
  void clickDirection(const Step& step);
  void chooseInMenu(const Step& step);
  void editButton(const Step& step);
  void editParameters(const Step& step);
  void restore();
  void plug(const Step& step);
  void chooseKind(const Step& step);
  void toggleAccess();
  void note(const std::string& what) { fTrace.push_back(what); }

  // Runs the action, during which a dialog has to come up if one is expected, and none if not.
  void acting(const std::function<void()>& action, const std::function<void(QDialog*)>& dialog = {});

  bool takeEdit(const EditStep& edit, QDialog* dialog);
  void chooseCategory(int row, QDialog* dialog);
  void chooseCommand(int row, QDialog* dialog);
  bool changeParameter(int which, QDialog* dialog);
  void changeKeystroke(int which, QDialog* dialog);
  void changeSnippet(int which, QDialog* dialog);
  void clickKeyBox(int which, QDialog* dialog);
  void takeParameterEdit(const EditStep& edit, QDialog* dialog);

  const Scenario& fScenario;
  Tally* fTally;
  PaneModel fModel;
  EditorModel fEditor;
  ParametersModel fParameters;
  Hands fHands;
  bool fAccess = false;
  std::vector<std::string> fTrace;
  Problems fProblems;
};

}  // namespace veltrix::model
