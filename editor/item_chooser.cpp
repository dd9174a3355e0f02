#include "editor/item_chooser.h"

#include <QAbstractItemView>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>
#include <QTreeView>
#include <utility>

#include "editor/sheet.h"
#include "platform/property_list_xml_text.h"

namespace veltrix {
namespace {

constexpr int kWidthInLines = 46;
constexpr int kHeightInLines = 24;
constexpr int kPlacesInLines = 11;
constexpr int kNameInLines = 18;
constexpr int kNameColumn = 0;
constexpr int kTypeColumn = 2;

}  // namespace

ItemPanel::ItemPanel(QWidget* parent, std::function<bool(const QString& path)> accepts)
    : QFileDialog(parent, QString(), QDir::homePath()), fAccepts(std::move(accepts)) {
  // The toolkit's own panel: those of the desktops take either files or folders.
  setOption(DontUseNativeDialog);
  setOption(ReadOnly);
  setAcceptMode(AcceptOpen);
  setFileMode(Directory);
  setOption(ShowDirsOnly, false);
  setLabelText(Accept, tr("Choose"));
  setLabelText(FileName, tr("&Name:"));
  for (const char* name : {"fileTypeLabel", "fileTypeCombo"}) {
    findChild<QWidget*>(QLatin1String(name))->hide();  // would offer folders only, as the only choice
  }
  arrange();
  // Screen readers say a menu's label, which the panel has not bound to it.
  findChild<QLabel*>(QStringLiteral("lookInLabel"))
      ->setBuddy(findChild<QWidget*>(QStringLiteral("lookInCombo")));
  // The panel disables its button for files; these follow after it whenever it does.
  fButton = findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"))->button(QDialogButtonBox::Open);
  connect(findChild<QLineEdit*>(QStringLiteral("fileNameEdit")), &QLineEdit::textChanged, this,
          &ItemPanel::updateButton);
  connect(findChild<QAbstractItemView*>(QStringLiteral("treeView"))->selectionModel(),
          &QItemSelectionModel::selectionChanged, this, &ItemPanel::updateButton);
  updateButton();
}

// Names of places and dates are cut off by the toolkit's own widths.
void ItemPanel::arrange() {
  const int line = fontMetrics().height();
  resize(line * kWidthInLines, line * kHeightInLines);
  findChild<QSplitter*>(QStringLiteral("splitter"))
      ->setSizes({line * kPlacesInLines, line * (kWidthInLines - kPlacesInLines)});
  QHeaderView* const header = findChild<QTreeView*>(QStringLiteral("treeView"))->header();
  header->hideSection(kTypeColumn);
  header->resizeSection(kNameColumn, line * kNameInLines);
  header->setStretchLastSection(true);
}

// The path of what is selected or typed; empty when that cannot be chosen.
QString ItemPanel::selectedItem() const {
  const QStringList paths = selectedFiles();
  const QFileInfo item(paths.isEmpty() ? QString() : paths.first());
  const QString path = QDir::cleanPath(item.absoluteFilePath());
  const bool canBeKept = !plist::firstBadXmlCharacter(path.toStdString());
  return !paths.isEmpty() && item.exists() && canBeKept && fAccepts(path) ? path : QString();
}

void ItemPanel::updateButton() {
  fButton->setEnabled(!selectedItem().isEmpty());
}

// Instead of the panel's own: that one refuses files while folders can be chosen.
void ItemPanel::accept() {
  const QString item = selectedItem();
  if (!item.isEmpty()) {
    fChosenPath = item.toStdString();
    done(Accepted);
  }
}

std::optional<std::string> chooseItem(QWidget* parent) {
  auto* panel = new ItemPanel(parent, [](const QString&) { return true; });
  panel->setWindowTitle(ItemPanel::tr("Choose a File or Folder"));
  const auto accepted = runSheet(panel);
  return accepted != nullptr ? accepted->chosenPath() : std::nullopt;
}

}  // namespace veltrix
