#pragma once

#include <QDialog>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "host/uninstall.h"
#include "platform/bundle.h"

class QCheckBox;
class QDialogButtonBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace veltrix {

// Asks before anything is removed, and shows what became of it. Its result is QDialog::Accepted when all that
// was wanted has been done.
class UninstallerWindow : public QDialog {
  Q_OBJECT

 public:
  // Does the work; called on another thread.
  using Work = std::function<std::vector<UninstallOutcome>(const UninstallPlan&)>;

  UninstallerWindow(Bundle bundle, UninstallPlan plan, Work work = uninstall);
  ~UninstallerWindow() override;

  void reject() override;  // not while it is at work

 private:
  QString text(const char* key) const;
  QLabel* addText(const QString& text);
  void ask();
  void begin();
  void tell(const std::vector<UninstallOutcome>& outcomes);
  void addCommand();
  void fitHeight();

  Bundle fBundle;
  UninstallPlan fPlan;
  Work fWork;
  std::thread fThread;
  bool fAsks = true;
  bool fAtWork = false;
  QVBoxLayout* fRows;
  QLabel* fHeading;
  QLabel* fQuestion;
  QCheckBox* fRemoveSettings;
  QDialogButtonBox* fButtons;
  QPushButton* fCancel;
  QPushButton* fRemove;
};

}  // namespace veltrix
