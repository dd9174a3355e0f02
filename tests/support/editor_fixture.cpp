#include "tests/support/editor_fixture.h"

#include <QAbstractButton>
#include <QStackedWidget>
#include <QTest>
#include <utility>

#include "helperlink/device_buttons.h"
#include "platform/property_list_io.h"
#include "tests/support/command_trees.h"

namespace veltrix::testing {
namespace {

constexpr std::uint32_t kSystem = 0x1090;

}  // namespace

plist::Dictionary makeDictionary(std::initializer_list<plist::Entry> entries) {
  plist::Dictionary dictionary = plist::Dictionary::create();
  for (const plist::Entry& entry : entries) {
    dictionary.set(entry.key, entry.value);
  }
  return dictionary;
}

EditControllerTest::EditControllerTest()
    : entry(makeDictionary({{"buttons", plist::Dictionary::create()}})), snippets(plist::Array::create()) {
  makeController(makeTreeOfAllKinds());
}

EditControllerTest::~EditControllerTest() = default;

void EditControllerTest::makeController(const plist::Array& tree) {
  writeFile(fResources.path() + "/Assignments.plist", plist::writeXml(tree).value());
  controller.reset();
  fBundle.emplace(fResources.path());
  controller = std::make_unique<VeltrixEditController>(*fBundle, this, &fWindow, kSystem);
}

void EditControllerTest::makeControllerOfTheCatalogue() {
  controller.reset();
  fBundle = Bundle::standard();
  controller = std::make_unique<VeltrixEditController>(*fBundle, this, &fWindow, kSystem);
}

bool EditControllerTest::edit(std::int32_t button, const std::function<void()>& inDialog) {
  fInDialog = inDialog;
  return controller->editButtonAction(button, entry, snippets);
}

plist::Dictionary EditControllerTest::editAction(plist::Dictionary action,
                                                 const std::function<void()>& inDialog) {
  setAction("03", std::move(action));
  EXPECT_TRUE(edit(3, [&] {
    inDialog();
    ok();
  }));
  return this->action("03");
}

void EditControllerTest::showAction(plist::Dictionary action, const std::function<void()>& inDialog) {
  setAction("03", std::move(action));
  EXPECT_FALSE(edit(3, inDialog));
}

void EditControllerTest::setAction(const char* key, plist::Dictionary action) {
  entry.dictionaryFor("buttons").set(key, std::move(action));
}

plist::Dictionary EditControllerTest::action(const char* key) const {
  return entry.dictionaryFor("buttons").dictionaryFor(key);
}

int EditControllerTest::page() const {
  return find<QStackedWidget>("outMainTabsParams")->currentIndex();
}

QString EditControllerTest::text(const char* field) const {
  return find<QLineEdit>(field)->text();
}

BrowserColumn& EditControllerTest::column(int number) const {
  return *find<CommandBrowser>("outEditBrowser")->column(number);
}

void EditControllerTest::click(const char* name) const {
  QTest::mouseClick(find(name), Qt::LeftButton);
}

void EditControllerTest::clickRow(int number, int row) const {
  BrowserColumn& one = column(number);
  const QModelIndex index = one.model()->index(row, 0);
  one.scrollTo(index);
  QTest::mouseClick(one.viewport(), Qt::LeftButton, {}, one.visualRect(index).center());
}

void EditControllerTest::choose(int category, int row) const {
  clickRow(CommandBrowser::kCategories, category);
  clickRow(CommandBrowser::kCommands, row);
}

void EditControllerTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  ASSERT_NE(QApplication::focusWidget(), nullptr);
  QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

void EditControllerTest::type(const char* field, const char* text) const {
  auto* widget = find(field);
  widget->setFocus();
  QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(widget, Qt::Key_Delete);
  QTest::keyClicks(widget, text);
}

std::int32_t EditControllerTest::modalDialog(QDialog* window) {
  ++dialogsRun;
  dialog = window;
  window->setResult(0);
  window->setWindowModality(Qt::WindowModal);
  window->show();
  QApplication::setActiveWindow(window);
  QCoreApplication::processEvents();
  fInDialog();
  window->hide();
  return window->result();
}

void EditControllerTest::actModalButtonOK() {
  dialog->done(1);
}

void EditControllerTest::actModalButtonCancel() {
  dialog->done(0);
}

std::int32_t EditControllerTest::vtxCurAssignmentTabIndex(std::int32_t button) const {
  return buttonPosition(device + 2, button);
}

}  // namespace veltrix::testing
