// The real pane, driven by random sequences of what a person can do, against a model of the document and the
// controls that knows nothing of the pane's code.
//
// The sequences are the same in every run; RC_PARAMS asks for others and for more, as in
// RC_PARAMS="seed=7 max_success=2000". A failing one is shortened before it is shown.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <rapidcheck.h>
#include <QString>
#include <cstdlib>
#include <iostream>

#include "tests/ui/model/player.h"

namespace veltrix::model {
namespace {

using ::testing::Each;
using ::testing::Gt;

constexpr const char* kUsualRun = "seed=1 max_success=12";
constexpr int kLeastSteps = 150;
constexpr int kMostSteps = 350;

// What the platform plugin of tests says of every window would hide the rest.
void passMessage(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& message) {
  if (!message.startsWith(QStringLiteral("This plugin does not support"))) {
    std::cerr << message.toStdString() << '\n';
  }
}

TEST(PaneModelTest, AnySequenceOfActionsLeavesFileControlsAndRecordAsTheRulesSay) {
  setenv("RC_PARAMS", kUsualRun, 0);  // NOLINT(concurrency-mt-unsafe)
  const QtMessageHandler usual = qInstallMessageHandler(passMessage);
  Tally tally;
  const auto agrees = [&tally] {
    const Scenario scenario = *scenarios(kLeastSteps, kMostSteps);
    const std::string problem = Player(scenario, &tally).play();
    if (!problem.empty()) {
      std::cerr << problem.substr(problem.rfind("\n->") + 1) << '\n';
      RC_FAIL(problem);
    }
  };
  EXPECT_TRUE(rc::check("the pane agrees with its model", agrees));
  qInstallMessageHandler(usual);
  // Whatever nobody could do has not been tested.
  EXPECT_THAT(tally.steps, Each(Gt(0)));
  EXPECT_THAT(tally.edits, Each(Gt(0)));
  for (const Page page :
       {Page::kClick, Page::kKeystroke, Page::kSnippet, Page::kScroll, Page::kUrl, Page::kScript}) {
    EXPECT_GT(tally.pages.at(static_cast<std::size_t>(page)), 0);
  }
  EXPECT_GT(tally.warnings, 0);
}

}  // namespace
}  // namespace veltrix::model
