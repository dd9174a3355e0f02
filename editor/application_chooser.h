#pragma once

#include <QDialog>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "editor/chosen_application.h"
#include "platform/installed_applications.h"

class QIcon;
class QModelIndex;

namespace veltrix {

class ApplicationFilter;
class ApplicationListModel;

// A sheet with the applications of this desktop and a field that narrows them down. Arrow keys in the field
// move through the list; what lies elsewhere is chosen by its path.
class ApplicationChooser : public QDialog {
  Q_OBJECT

 public:
  // `applications` in the order in which they are shown. Icons are asked for when they are about to be seen.
  ApplicationChooser(std::vector<InstalledApplication> applications, QWidget* parent,
                     std::function<QIcon(const InstalledApplication&)> icon = themeIcon);
  ~ApplicationChooser() override;

  // None before one has been chosen.
  const std::optional<ChosenApplication>& chosen() const { return fChosen; }

  // The icon of the desktop's theme or at its path; a plain one when there is none.
  static QIcon themeIcon(const InstalledApplication& application);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Widgets;

  void showMatches(const QString& typed);
  void showCurrent();
  void chooseCurrent();
  void chooseOther();

  std::unique_ptr<Widgets> fWidgets;
  ApplicationListModel* fModel;
  ApplicationFilter* fFilter;
  std::optional<ChosenApplication> fChosen;
};

// Runs the chooser with the applications of this desktop as a sheet of `parent`'s window. None when the
// person cancelled or the parent went away meanwhile.
std::optional<ChosenApplication> chooseApplication(QWidget* parent);

}  // namespace veltrix
