#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSlider>
#include <QStackedWidget>

#include "editor/edit_controller.h"
#include "tests/ui/model/comparison.h"

namespace veltrix::model {
namespace {

int selectedRow(QDialog* dialog, const char* column) {
  const auto rows = dialog->findChild<QAbstractItemView*>(column)->selectionModel()->selectedRows();
  return rows.isEmpty() ? -1 : rows.first().row();
}

Json checkedKeys(QDialog* dialog, const std::string& prefix) {
  Json keys = Json::array();
  for (const char* key : {"Command", "Shift", "Option", "Control"}) {
    keys.push_back(dialog->findChild<QAbstractButton*>((prefix + key).c_str())->isChecked());
  }
  return keys;
}

std::string lineText(QDialog* dialog, const char* field) {
  return dialog->findChild<QLineEdit*>(field)->text().toStdString();
}

std::string plainText(QDialog* dialog, const char* field) {
  return dialog->findChild<QPlainTextEdit*>(field)->toPlainText().toStdString();
}

}  // namespace

void compareEditor(const EditorModel& model, QDialog* dialog, Problems* problems) {
  const auto check = [&](const std::string& what, const Json& expected, const Json& actual) {
    compare(problems, "editor: " + what, expected, actual);
  };
  check("action", model.action(), jsonOf(gVeltrixEditController->vtxGetCurrentAction()));
  check("category and command", {model.place().category, model.place().command},
        {selectedRow(dialog, "browserCategories"), selectedRow(dialog, "browserCommands")});
  check("page", static_cast<int>(model.page()),
        dialog->findChild<QStackedWidget*>("outMainTabsParams")->currentIndex());
  check("label", model.label(), lineText(dialog, "outMainFieldLabel"));
  switch (model.page()) {
    case Page::kNone:
      break;
    case Page::kClick:
      check("held keys", model.keys(), checkedKeys(dialog, "outActClickBox"));
      break;
    case Page::kKeystroke:
      check("keystroke", model.text(), lineText(dialog, "outActKeyFieldKeystroke"));
      check("held keys", model.keys(), checkedKeys(dialog, "outActKeyBox"));
      break;
    case Page::kSnippet:
      check("snippet name", model.text(), lineText(dialog, "outActSnippetFieldName"));
      check("snippet text", model.snippetBody(), plainText(dialog, "outActSnippetFieldText"));
      break;
    case Page::kScroll:
      check("speed", model.speed(),
            dialog->findChild<QComboBox*>("outActScrollMenuSpeed")->currentData().toInt());
      break;
    case Page::kApplication:
      check("application", model.text(), lineText(dialog, "outActAppFieldApp"));
      break;
    case Page::kItem:
      check("item", model.text(), lineText(dialog, "outActItemFieldItem"));
      break;
    case Page::kUrl:
      check("address", model.text(), lineText(dialog, "outActURLFieldURL"));
      break;
    case Page::kScript:
      check("script", model.text(), plainText(dialog, "outActAppleScriptFieldScript"));
      break;
  }
}

void compareParameters(const ParametersModel& model, QDialog* dialog, Problems* problems) {
  for (int row = 0; row < kParameters; ++row) {
    const std::string number = std::to_string(row + 1);
    const auto* slider = dialog->findChild<QSlider*>(("outParamSlider" + number).c_str());
    compare(problems, "parameter " + number, {model.position(row), std::to_string(model.value(row))},
            {slider->value(), lineText(dialog, ("outParamField" + number).c_str())});
  }
}

}  // namespace veltrix::model
