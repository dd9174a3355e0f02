#include "editor/application_chooser.h"

#include <QApplication>
#include <QFileInfo>
#include <QIcon>
#include <QKeyEvent>
#include <QPushButton>
#include <QStyle>
#include <algorithm>
#include <array>
#include <utility>

#include "editor/application_list.h"
#include "editor/item_chooser.h"
#include "editor/sheet.h"
#include "ui_application_chooser.h"

namespace veltrix {

namespace {

constexpr int kListLines = 28;  // sizes in lines of text
constexpr int kListWidth = 26;
constexpr int kIconLines = 2;
constexpr int kCommentLines = 2;

// Keys that move through the list while the person types into the field.
bool movesThroughList(const QKeyEvent& event) {
  constexpr std::array kKeys = {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown};
  return event.modifiers() == Qt::NoModifier &&
         std::find(kKeys.begin(), kKeys.end(), event.key()) != kKeys.end();
}

// Old entries name files of the theme's folders with their ending.
QString withoutPictureSuffix(const QString& name) {
  for (const char* suffix : {".png", ".svg", ".xpm"}) {
    if (name.endsWith(QLatin1String(suffix))) {
      return name.chopped(4);
    }
  }
  return name;
}

bool isApplication(const QString& path) {
  const QFileInfo item(path);
  return item.isDir() ? path.endsWith(QLatin1String(".app"))
                      : path.endsWith(QLatin1String(".desktop")) || item.isExecutable();
}

}  // namespace

struct ApplicationChooser::Widgets : Ui::VeltrixApplicationChooser {
  QPushButton* buttonChoose = nullptr;
};

ApplicationChooser::ApplicationChooser(std::vector<InstalledApplication> applications, QWidget* parent,
                                       std::function<QIcon(const InstalledApplication&)> icon)
    : QDialog(parent),
      fWidgets(std::make_unique<Widgets>()),
      fModel(new ApplicationListModel(std::move(applications), std::move(icon), this)),
      fFilter(new ApplicationFilter(fModel, this)) {
  fWidgets->setupUi(this);
  const int line = fontMetrics().height();
  fWidgets->listApplications->setModel(fFilter);
  fWidgets->listApplications->setIconSize(QSize(line * kIconLines, line * kIconLines));
  fWidgets->labelComment->setMinimumHeight(line * kCommentLines);
  resize(line * kListWidth, line * kListLines);
  fWidgets->fieldSearch->installEventFilter(this);

  QDialogButtonBox* const buttons = fWidgets->buttonsApplication;
  fWidgets->buttonChoose = buttons->addButton(tr("Choose"), QDialogButtonBox::AcceptRole);
  fWidgets->buttonChoose->setObjectName(QStringLiteral("buttonChoose"));
  fWidgets->buttonChoose->setDefault(true);

  connect(fWidgets->fieldSearch, &QLineEdit::textChanged, this, &ApplicationChooser::showMatches);
  connect(fWidgets->listApplications->selectionModel(), &QItemSelectionModel::currentChanged, this,
          &ApplicationChooser::showCurrent);
  connect(fWidgets->listApplications, &QListView::doubleClicked, this, &ApplicationChooser::chooseCurrent);
  connect(buttons, &QDialogButtonBox::accepted, this, &ApplicationChooser::chooseCurrent);
  connect(buttons, &QDialogButtonBox::rejected, this, &ApplicationChooser::reject);
  connect(fWidgets->buttonOther, &QPushButton::clicked, this, &ApplicationChooser::chooseOther);
  showMatches(QString());
}

ApplicationChooser::~ApplicationChooser() = default;

QIcon ApplicationChooser::themeIcon(const InstalledApplication& application) {
  const QString name = QString::fromStdString(application.icon);
  QIcon icon = name.startsWith(QLatin1Char('/')) ? QIcon(name) : QIcon::fromTheme(withoutPictureSuffix(name));
  if (icon.isNull()) {
    icon = QIcon::fromTheme(QStringLiteral("application-x-executable"));
  }
  return icon.isNull() ? QApplication::style()->standardIcon(QStyle::SP_FileIcon) : icon;
}

bool ApplicationChooser::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && movesThroughList(*static_cast<QKeyEvent*>(event))) {
    QCoreApplication::sendEvent(fWidgets->listApplications, event);
    return true;
  }
  return QDialog::eventFilter(watched, event);
}

void ApplicationChooser::showMatches(const QString& typed) {
  fFilter->setTyped(typed);
  fWidgets->listApplications->setCurrentIndex(fFilter->index(0, 0));
  fWidgets->listApplications->scrollToTop();
  showCurrent();
}

void ApplicationChooser::showCurrent() {
  const QModelIndex current = fWidgets->listApplications->currentIndex();
  fWidgets->labelComment->setText(current.isValid()
                                      ? QString::fromStdString(fFilter->application(current).comment)
                                      : tr("No application matches."));
  fWidgets->buttonChoose->setEnabled(current.isValid());
}

void ApplicationChooser::chooseCurrent() {
  const QModelIndex current = fWidgets->listApplications->currentIndex();
  if (current.isValid()) {
    fChosen = chosenApplication(fFilter->application(current));
    accept();
  }
}

void ApplicationChooser::chooseOther() {
  auto* panel = new ItemPanel(this, isApplication);
  panel->setWindowTitle(tr("Choose an Application"));
  if (const auto accepted = runSheet(panel)) {
    fChosen = chosenApplication(*accepted->chosenPath(), standardApplicationSearch());
    accept();
  }
}

std::optional<ChosenApplication> chooseApplication(QWidget* parent) {
  auto* chooser = new ApplicationChooser(installedApplications(standardApplicationSearch()), parent);
  const auto accepted = runSheet(chooser);
  return accepted != nullptr ? accepted->chosen() : std::nullopt;
}

}  // namespace veltrix
