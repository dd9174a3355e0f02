#pragma once

#include <array>

#include "ui_action_editor.h"

namespace veltrix {

inline constexpr int kModelPageCount = 6;

// The widgets of the action editor under the names that they have in the interface file. They belong to the
// dialog.
struct EditOutlets : Ui::VeltrixActionEditor {
  QDialog* outEditWindow = nullptr;
  std::array<ButtonTabs*, kModelPageCount> fEditTabsButtons{};
};

// Makes the dialog, hidden, as a child of `parent`, with `tree` in its browser. The tree must outlive it.
void makeEditInterface(QWidget* parent, const CommandTree* tree, const Localize& localize,
                       EditOutlets* outlets);

// The four modifier keys as check boxes: those of the click page and those of the keystroke page.
struct ModifierBoxes {
  QCheckBox* control;
  QCheckBox* command;
  QCheckBox* option;
  QCheckBox* shift;
};
ModifierBoxes clickBoxes(const EditOutlets& outlets);
ModifierBoxes keystrokeBoxes(const EditOutlets& outlets);

// The text of a field as it was given or typed, lines ending in "\n". The field's own plain text has usual
// blanks in place of those that keep words together.
QString fullText(const QPlainTextEdit* field);

}  // namespace veltrix
