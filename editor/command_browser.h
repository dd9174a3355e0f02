#pragma once

#include <QWidget>
#include <cstdint>

#include "actions/command_tree.h"

namespace veltrix {

class BrowserColumn;

// Two columns: the categories of the command tree (0), and the commands of the selected one (1). The arrow
// keys lead from one column to the other.
class CommandBrowser : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kCategories = 0;
  static constexpr int kCommands = 1;

  explicit CommandBrowser(QWidget* parent = nullptr);

  // The tree must outlive the browser. Nothing is selected afterwards.
  void setTree(const CommandTree* tree, Localize localize);

  // The list that names the snippets, which may be null. The selection stays.
  void setSnippets(const plist::Array& snippets);

  // Reads the names of the snippets again.
  void refreshTitles();

  int selectedRow(int column) const;                      // -1 for none
  int selectedColumn() const { return fSelectedColumn; }  // where a row was chosen last

  // Selects without sending browsed(); nothing for a row that is not there. Another category has its commands
  // shown and none of them selected.
  void selectRow(int column, int row);

  // The code of the selected command; the first counts where nothing is selected. 0 for none.
  std::int32_t selectedCommand() const;

  // Gives the keys to the commands, or to the categories when no command is shown.
  void focusCommands();

  BrowserColumn* column(int column) const { return column == kCategories ? fCategories : fCommands; }

 signals:
  // A person chose a row of selectedColumn().
  void browsed();

 private:
  void chose(int column);
  void showCommands();
  QStringList commandTitles(std::int32_t category) const;

  const CommandTree* fTree = nullptr;
  Localize fLocalize;
  plist::Array fSnippets;
  BrowserColumn* fCategories;
  BrowserColumn* fCommands;
  int fSelectedColumn = -1;
  int fShownCategory = -1;
};

}  // namespace veltrix
