// The menus of all buttons: making them with the template's items, and showing what the buttons of one
// trackball do.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <array>
#include <memory>
#include <vector>

#include "pane/assignment_menu.h"
#include "pane/controller.h"
#include "pane/host_notifications.h"
#include "pane/menu_template.h"
#include "pane/outlets.h"
#include "pane/pref_pane.h"
#include "platform/bundle.h"

namespace {

constexpr int kMenus = 25;
constexpr std::array<std::int32_t, 6> kButtons = {0, 1, 2, 3, 8, 9};

// The pane with the settings that are shipped, not on the screen.
class Pane {
 public:
  Pane()
      : fPane(VeltrixPrefPane::initWithBundle(veltrix::Bundle::standard(),
                                              veltrix::standardPaneServices(veltrix::Bundle::standard()),
                                              &fNotifications)),
        fView(fPane->loadMainView()) {}

  QString localized(const char* key) const { return fPane->vtxLocString(key); }

 private:
  veltrix::HostNotifications fNotifications;
  std::unique_ptr<VeltrixPrefPane> fPane;
  QWidget* fView;  // the pane's
};

void BM_FillMenus(benchmark::State& state) {
  const Pane pane;
  while (state.KeepRunning()) {
    state.PauseTiming();
    std::vector<std::unique_ptr<veltrix::AssignmentMenu>> menus;
    menus.reserve(kMenus);
    for (int i = 0; i < kMenus; ++i) {
      menus.push_back(std::make_unique<veltrix::AssignmentMenu>());
    }
    state.ResumeTiming();
    const veltrix::MenuTemplate items([&pane](const char* key) { return pane.localized(key); });
    for (const auto& menu : menus) {
      items.copyTo(menu.get(), 0);
    }
    state.PauseTiming();
    menus.clear();
    state.ResumeTiming();
  }
}
BENCHMARK(BM_FillMenus);

void BM_ShowAssignments(benchmark::State& state) {
  const Pane pane;
  const veltrix::MenuTemplate items([&pane](const char* key) { return pane.localized(key); });
  std::array<veltrix::AssignmentMenu, kButtons.size()> menus;
  for (auto& menu : menus) {
    items.copyTo(&menu, 0);
  }
  while (state.KeepRunning()) {
    for (std::size_t i = 0; i < kButtons.size(); ++i) {
      gVeltrixController->vtxUpdateMenu(&menus.at(i), kButtons.at(i));
    }
  }
}
BENCHMARK(BM_ShowAssignments);

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
