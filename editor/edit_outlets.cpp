#include "editor/edit_outlets.h"

#include <QCoreApplication>
#include <QFontDatabase>
#include <QPushButton>
#include <QScreen>
#include <QTextDocument>
#include <algorithm>

namespace veltrix {
namespace {

constexpr int kTextLines = 4;         // the least that a multi-line field shows
constexpr double kScreenShare = 0.9;  // that the window fills at most when it is made

QString localized(const char* text) {
  return QCoreApplication::translate("VeltrixActionEditor", text);
}

void setLeastLines(QPlainTextEdit* field, int lines) {
  const int margins = 2 * (field->frameWidth() + static_cast<int>(field->document()->documentMargin()));
  field->setMinimumHeight(field->fontMetrics().lineSpacing() * lines + margins);
}

// The page takes the room that it is given; its own wish would make every other page as high.
void finishTextField(QPlainTextEdit* field) {
  setLeastLines(field, kTextLines);
  field->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
}

// In letters of one width, as large as all others.
void finishScriptField(QPlainTextEdit* field) {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setPointSizeF(field->font().pointSizeF());
  field->setFont(font);
  finishTextField(field);
}

// The fields of all pages stand below one another.
void finishLabels(const EditOutlets& outlets) {
  QLabel* const labels[] = {
      outlets.labelEditLabel,       outlets.labelParamNoneSpace, outlets.labelActClick,
      outlets.labelActKeyKeystroke, outlets.labelActKeyBoxes,    outlets.labelActSnippetName,
      outlets.labelActSnippetText,  outlets.labelActScrollSpeed, outlets.labelActApp,
      outlets.labelActItem,         outlets.labelActURL,         outlets.labelActAppleScript};
  int width = 0;
  for (const QLabel* label : labels) {
    width = std::max(width, label->sizeHint().width());
  }
  for (QLabel* label : labels) {
    label->setMinimumWidth(width);
  }
}

void finishButtons(EditOutlets* outlets) {
  QPushButton* const ok = outlets->editButtonBox->button(QDialogButtonBox::Ok);
  ok->setObjectName(QStringLiteral("buttonEditOK"));
  ok->setText(localized("&OK"));  // with a letter, since Return makes a line in a text
  ok->setDefault(true);
  outlets->editButtonBox->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("buttonEditCancel"));
  outlets->buttonActChooseApp->setAccessibleName(localized("Choose an application"));
  outlets->buttonActChooseItem->setAccessibleName(localized("Choose a file or folder"));
}

}  // namespace

void makeEditInterface(QWidget* parent, const CommandTree* tree, const Localize& localize,
                       EditOutlets* outlets) {
  outlets->outEditWindow = new QDialog(parent);
  outlets->setupUi(outlets->outEditWindow);
  outlets->fEditTabsButtons = {outlets->outEditTabsButtons1, outlets->outEditTabsButtons2,
                               outlets->outEditTabsButtons3, outlets->outEditTabsButtons4,
                               outlets->outEditTabsButtons5, outlets->outEditTabsButtons6};
  outlets->outEditBrowser->setTree(tree, localize);
  outlets->labelActKeyHint->setText(localized(KeystrokeField::kLeaveHint));
  finishTextField(outlets->outActSnippetFieldText);
  finishScriptField(outlets->outActAppleScriptFieldScript);
  finishLabels(*outlets);
  finishButtons(outlets);
  const QSize room = outlets->outEditWindow->screen()->availableSize() * kScreenShare;
  outlets->outEditWindow->resize(outlets->outEditWindow->sizeHint().boundedTo(room));
}

ModifierBoxes clickBoxes(const EditOutlets& outlets) {
  return {outlets.outActClickBoxControl, outlets.outActClickBoxCommand, outlets.outActClickBoxOption,
          outlets.outActClickBoxShift};
}

ModifierBoxes keystrokeBoxes(const EditOutlets& outlets) {
  return {outlets.outActKeyBoxControl, outlets.outActKeyBoxCommand, outlets.outActKeyBoxOption,
          outlets.outActKeyBoxShift};
}

QString fullText(const QPlainTextEdit* field) {
  QString text = field->document()->toRawText();
  std::replace_if(
      text.begin(), text.end(),
      [](QChar unit) { return unit == QChar::ParagraphSeparator || unit == QChar::LineSeparator; },
      QLatin1Char('\n'));
  return text;
}

}  // namespace veltrix
