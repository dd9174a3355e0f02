#include "host/uninstaller_window.h"

#include <QCheckBox>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

#include "widgets/picture_icon.h"

namespace veltrix {
namespace {

constexpr int kWidthInLines = 30;
constexpr qreal kHeadingSize = 1.3;  // relative to the usual text

}  // namespace

UninstallerWindow::UninstallerWindow(Bundle bundle, UninstallPlan plan, Work work)
    : fBundle(std::move(bundle)), fPlan(std::move(plan)), fWork(std::move(work)) {
  setWindowTitle(text("Remove Veltrix"));
  setWindowIcon(pictureIcon("icon"));
  const int line = fontMetrics().height();
  fRows = new QVBoxLayout(this);
  fRows->setContentsMargins(line, line, line, line);
  fRows->setSpacing(line * 2 / 3);
  ask();
  resize(kWidthInLines * line, 0);
  fitHeight();
}

UninstallerWindow::~UninstallerWindow() {
  if (fThread.joinable()) {
    fThread.join();
  }
}

void UninstallerWindow::reject() {
  if (!fAtWork) {
    QDialog::reject();
  }
}

QString UninstallerWindow::text(const char* key) const {
  return QString::fromStdString(fBundle.localizedString(key, "", kStringTable));
}

// In front of the buttons.
QLabel* UninstallerWindow::addText(const QString& text) {
  auto* label = new QLabel(text, this);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  fRows->insertWidget(fRows->count() - 1, label);
  return label;
}

void UninstallerWindow::ask() {
  fButtons = new QDialogButtonBox(this);
  fRows->addWidget(fButtons);
  fHeading = addText(text("Do you want to remove Veltrix?"));
  QFont font = fHeading->font();
  font.setPointSizeF(font.pointSizeF() * kHeadingSize);
  font.setBold(true);
  fHeading->setFont(font);
  fQuestion = addText(
      text("The settings window is closed, the helper is stopped, and it does not start with your session "
           "any more. Your trackballs then work as they do without Veltrix. You are told afterwards how to "
           "remove the programs themselves."));
  fRemoveSettings = new QCheckBox(text("Remove my &settings, too"), this);
  fRemoveSettings->setObjectName("boxRemoveSettings");
  fRemoveSettings->setChecked(fPlan.removeSettings);
  fRows->insertWidget(fRows->count() - 1, fRemoveSettings);
  fCancel = fButtons->addButton(text("&Cancel"), QDialogButtonBox::RejectRole);
  fCancel->setObjectName("buttonCancel");
  fRemove = fButtons->addButton(text("&Remove"), QDialogButtonBox::ActionRole);
  fRemove->setObjectName("buttonRemove");
  // Return alone removes nothing.
  fCancel->setDefault(true);
  fCancel->setFocus();
  connect(fCancel, &QPushButton::clicked, this, &QDialog::reject);
  connect(fRemove, &QPushButton::clicked, this, &UninstallerWindow::begin);
}

void UninstallerWindow::begin() {
  fAtWork = true;
  fPlan.removeSettings = fRemoveSettings->isChecked();
  for (QWidget* widget : std::initializer_list<QWidget*>{fRemoveSettings, fCancel, fRemove}) {
    widget->setEnabled(false);
  }
  fQuestion->setText(text("Please wait until the helper has ended…"));
  fThread = std::thread([this, plan = fPlan] {
    const auto outcomes = fWork(plan);
    QMetaObject::invokeMethod(
        this, [this, outcomes] { tell(outcomes); }, Qt::QueuedConnection);
  });
}

void UninstallerWindow::tell(const std::vector<UninstallOutcome>& outcomes) {
  fAtWork = false;
  fAsks = false;
  QStringList sentences;
  for (const UninstallOutcome& outcome : outcomes) {
    sentences.append(QString::fromStdString(sentenceFor(outcome, fPlan, fBundle)));
  }
  const bool done = allDone(outcomes);
  fHeading->setText(text(done ? "Veltrix does not run any more" : "Not everything could be done"));
  fQuestion->setText(sentences.join('\n'));
  fQuestion->setObjectName("labelOutcome");
  fQuestion->setTextInteractionFlags(Qt::TextSelectableByMouse);
  addText(text("To remove the programs themselves, type this in a terminal:"));
  addCommand();
  fButtons->clear();
  QPushButton* const close = fButtons->addButton(text("C&lose"), QDialogButtonBox::AcceptRole);
  close->setObjectName("buttonClose");
  close->setDefault(true);
  close->setFocus();
  const int result = done ? QDialog::Accepted : QDialog::Rejected;
  connect(close, &QPushButton::clicked, this, [this, result] { QDialog::done(result); });
  fitHeight();
}

// Lines of text break by the width, which only the layout knows to turn into a height.
// What came after the window was shown counts only once it is shown itself.
void UninstallerWindow::fitHeight() {
  for (QWidget* child : findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
    child->setVisible(child != fRemoveSettings || fAsks);
  }
  fRows->activate();
  resize(width(), fRows->totalHeightForWidth(width()));
}

void UninstallerWindow::addCommand() {
  auto* row = new QHBoxLayout;
  auto* command = new QLineEdit(QString::fromLatin1(kPackageRemoval), this);
  command->setObjectName("fieldCommand");
  command->setReadOnly(true);
  command->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  command->setAccessibleName(text("To remove the programs themselves, type this in a terminal:"));
  auto* copy = new QPushButton(text("C&opy"), this);
  copy->setObjectName("buttonCopy");
  copy->setAutoDefault(false);
  connect(copy, &QPushButton::clicked, command,
          [command] { QGuiApplication::clipboard()->setText(command->text()); });
  row->addWidget(command);
  row->addWidget(copy);
  fRows->insertLayout(fRows->count() - 1, row);
}

}  // namespace veltrix
