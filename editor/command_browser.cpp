#include "editor/command_browser.h"

#include <QGridLayout>
#include <QLabel>
#include <algorithm>
#include <utility>

#include "editor/browser_column.h"

namespace veltrix {
CommandBrowser::CommandBrowser(QWidget* parent)
    : QWidget(parent), fCategories(new BrowserColumn(true, this)), fCommands(new BrowserColumn(false, this)) {
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setColumnStretch(kCommands, 1);
  grid->setRowStretch(1, 1);
  const QString captions[] = {tr("Cate&gory:"), tr("Co&mmand:")};
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
  QStringList categories;
  QStringList commands;
  for (std::int32_t category = 0; category < fTree->categoryCount(); ++category) {
    categories << QString::fromStdString(fTree->categoryTitle(category, fLocalize));
    commands << commandTitles(category);
  }
  fCategories->setTitles(categories);
  fCategories->updateGeometry();
  fCommands->setTypicalTitles(commands);
  fSelectedColumn = -1;
  showCommands();
}

void CommandBrowser::setSnippets(const plist::Array& snippets) {
  fSnippets = snippets;
  refreshTitles();
}

void CommandBrowser::refreshTitles() {
  fCommands->renameRows(commandTitles(fShownCategory));
}

QStringList CommandBrowser::commandTitles(std::int32_t category) const {
  QStringList titles;
  const std::int32_t count = category < 0 ? 0 : fTree->commandCount(category);
  for (std::int32_t row = 0; row < count; ++row) {
    titles << QString::fromStdString(fTree->commandTitle(category, row, fSnippets, fLocalize));
  }
  return titles;
}

void CommandBrowser::showCommands() {
  fShownCategory = fCategories->selectedRow();
  fCommands->setTitles(commandTitles(fShownCategory));
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
