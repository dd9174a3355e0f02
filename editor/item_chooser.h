#pragma once

#include <functional>
#include <optional>
#include <string>

#include <QFileDialog>

class QPushButton;
class QWidget;

namespace veltrix {

// A sheet that lets a person choose one file or one folder; a folder that is selected is chosen by the
// button, entered by a double click.
class ItemPanel : public QFileDialog {
  Q_OBJECT

 public:
  // Only items that `accepts` is true for can be chosen; it is asked with absolute paths of what exists.
  ItemPanel(QWidget* parent, std::function<bool(const QString& path)> accepts);

  // The absolute path; none before something has been chosen. It can be kept in a settings file.
  std::optional<std::string> chosenPath() const { return fChosenPath; }

 protected:
  void accept() override;

 private:
  QString selectedItem() const;
  void arrange();
  void updateButton();

  std::function<bool(const QString& path)> fAccepts;
  QPushButton* fButton = nullptr;
  std::optional<std::string> fChosenPath;
};

// Runs a panel for files and folders as a sheet of `parent`'s window. The absolute path of what was chosen,
// not abbreviated; none when the person cancelled or the parent went away meanwhile.
std::optional<std::string> chooseItem(QWidget* parent);

}  // namespace veltrix
