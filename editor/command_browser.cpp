#include "editor/command_browser.h"

#include <QGridLayout>
#include <QLabel>
#include <algorithm>
#include <utility>

#include "editor/browser_column.h"

namespace veltrix {
namespace {

constexpr int kCategoriesStretch = 2;
constexpr int kCommandsStretch = 3;

}  // namespace

CommandBrowser::CommandBrowser(QWidget* parent)
    : QWidget(parent), fCategories(new BrowserColumn(true, this)), fCommands(new BrowserColumn(false, this)) {
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setColumnStretch(0, kCategoriesStretch);
  grid->setColumnStretch(1, kCommandsStretch);
  grid->setRowStretch(1, 1);
  const QString captions[] = {tr("C&ategory:"), tr("Co&mmand:")};
  const QString names[] = {tr("Categories of commands"), tr("Commands of the category")};
  for (const int number : {kCategories, kCommands}) {
    auto* label = new QLabel(captions[number], this);
    label->setBuddy(column(number));
    grid->addWidget(label, 0, number);
    grid->addWidget(column(number), 1, number);
    column(number)->setAccessibleName(names[number]);
    connect(column(number), &BrowserColumn::chosen, this, [this, number] { chose(number); });
  }
  fCategories->setObjectName(QStringLiteral("browserCategories"));
  fCommands->setObjectName(QStringLiteral("browserCommands"));
  connect(fCategories, &BrowserColumn::left, this, [this](int direction) {
    if (direction > 0) {
      focusCommands();
    }
  });
  connect(fCommands, &BrowserColumn::left, this, [this](int direction) {
    if (direction < 0) {
      fCategories->setFocus();
    }
  });
}

void CommandBrowser::setTree(const CommandTree* tree, Localize localize) {
  fTree = tree;
  fLocalize = std::move(localize);
  QStringList titles;
  for (std::int32_t category = 0; category < fTree->categoryCount(); ++category) {
    titles << QString::fromStdString(fTree->categoryTitle(category, fLocalize));
  }
  fCategories->setTitles(titles);
  fSelectedColumn = -1;
  showCommands();
}

void CommandBrowser::setSnippets(const plist::Array& snippets) {
  fSnippets = snippets;
  refreshTitles();
}

void CommandBrowser::refreshTitles() {
  fCommands->renameRows(commandTitles());
}

QStringList CommandBrowser::commandTitles() const {
  QStringList titles;
  const std::int32_t count = fShownCategory < 0 ? 0 : fTree->commandCount(fShownCategory);
  for (std::int32_t row = 0; row < count; ++row) {
    titles << QString::fromStdString(fTree->commandTitle(fShownCategory, row, fSnippets, fLocalize));
  }
  return titles;
}

void CommandBrowser::showCommands() {
  fShownCategory = fCategories->selectedRow();
  fCommands->setTitles(commandTitles());
}

void CommandBrowser::chose(int column) {
  fSelectedColumn = column;
  if (column == kCategories && fCategories->selectedRow() != fShownCategory) {
    showCommands();
  }
  emit browsed();
}

int CommandBrowser::selectedRow(int column) const {
  return this->column(column)->selectedRow();
}

void CommandBrowser::selectRow(int column, int row) {
  this->column(column)->selectRow(row);
  if (column == kCategories && fCategories->selectedRow() != fShownCategory) {
    showCommands();
  }
}

std::int32_t CommandBrowser::selectedCommand() const {
  if (fTree == nullptr) {
    return 0;
  }
  return fTree->commandAt(std::max(fCategories->selectedRow(), 0), std::max(fCommands->selectedRow(), 0));
}

void CommandBrowser::focusCommands() {
  (fCommands->rowCount() > 0 ? fCommands : fCategories)->setFocus();
}

}  // namespace veltrix
