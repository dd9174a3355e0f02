#include "editor/param_controller.h"

#include <QDialog>
#include <QGridLayout>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QSlider>
#include <QWheelEvent>

#include "editor/typed_number.h"
#include "settings/deep_copy.h"
#include "settings/settings_keys.h"
#include "ui_scroll_params.h"

namespace {

constexpr std::int32_t kDialogOK = 1;
constexpr int kFirstTag = 1;
constexpr int kLastTag = 6;  // one more than there are sliders
constexpr const char* kTag = "tag";
constexpr int kSliderLines = 12;  // shortest length, in lines of text

// The rows in their order.
constexpr std::array kKeys = {veltrix::keys::kTriggerTime, veltrix::keys::kTimeDecay,
                              veltrix::keys::kTimeStop, veltrix::keys::kCountDecay,
                              veltrix::keys::kCountStop};

std::u16string textOf(const QLineEdit& field) {
  return field.text().toStdU16String();
}

// Leaves a field that shows the value already as it is, with its caret, its selection and what can be undone.
void showInField(QLineEdit* field, std::int32_t value) {
  const veltrix::ShownNumber shown = veltrix::shownNumber(value, textOf(*field), field->cursorPosition());
  const QString text = QString::fromStdString(shown.text);
  if (field->text() == text) {
    return;
  }
  field->setText(text);
  field->setCursorPosition(shown.caret);
  if (shown.isSelected) {
    field->selectAll();
  }
}

// Sizes that grow with the font.
void layOut(QGridLayout* rows, const std::array<QSlider*, kKeys.size()>& sliders,
            const std::array<QLineEdit*, kKeys.size()>& fields) {
  const QFontMetrics metrics = sliders.front()->fontMetrics();
  rows->setVerticalSpacing(metrics.height() / 2);
  for (std::size_t row = 0; row < kKeys.size(); ++row) {
    sliders[row]->setMinimumWidth(metrics.height() * kSliderLines);
    fields[row]->setFixedWidth(metrics.horizontalAdvance(QStringLiteral("00000000")));
  }
}

}  // namespace

VeltrixParamController::VeltrixParamController(veltrix::EditorHost* host, QWidget* parent)
    : fParent(parent), outControllerMain(host) {}

VeltrixParamController::~VeltrixParamController() = default;

bool VeltrixParamController::editScrollParams(veltrix::plist::Dictionary entry) {
  const veltrix::plist::Dictionary param = entry.dictionaryFor(veltrix::keys::kParam);
  if (!param) {
    return false;
  }
  fScrollParamDict = veltrix::mutableDeepAutoreleasedCopy(param);
  if (outParamWindow == nullptr) {
    makeWindow();
  }
  vtxGetUIFromParams();
  outParamSlider1->setFocus();
  if (outControllerMain->modalDialog(outParamWindow) != kDialogOK) {
    return false;
  }
  vtxGetParamsFromUI(false);  // a value that was missing is stored too
  entry.set(veltrix::keys::kParam, fScrollParamDict);
  return true;
}

void VeltrixParamController::makeWindow() {
  outParamWindow = new QDialog(fParent);
  Ui::VeltrixScrollParams ui;
  ui.setupUi(outParamWindow);
  outParamSlider1 = ui.outParamSlider1;
  outParamSlider2 = ui.outParamSlider2;
  outParamSlider3 = ui.outParamSlider3;
  outParamSlider4 = ui.outParamSlider4;
  outParamSlider5 = ui.outParamSlider5;
  outParamField1 = ui.outParamField1;
  outParamField2 = ui.outParamField2;
  outParamField3 = ui.outParamField3;
  outParamField4 = ui.outParamField4;
  outParamField5 = ui.outParamField5;
  ui.paramLayout->setSpacing(outParamWindow->fontMetrics().height());
  layOut(ui.paramGrid, {outParamSlider1, outParamSlider2, outParamSlider3, outParamSlider4, outParamSlider5},
         {outParamField1, outParamField2, outParamField3, outParamField4, outParamField5});
  connect(ui.buttonsParams, &QDialogButtonBox::accepted, this,
          [this] { outControllerMain->actModalButtonOK(); });
  connect(ui.buttonsParams, &QDialogButtonBox::rejected, this,
          [this] { outControllerMain->actModalButtonCancel(); });
  awakeFromNib();
}

void VeltrixParamController::awakeFromNib() {
  fParamSliders = {outParamSlider1, outParamSlider2, outParamSlider3, outParamSlider4, outParamSlider5};
  fParamFields = {outParamField1, outParamField2, outParamField3, outParamField4, outParamField5};
  for (std::size_t row = 0; row < kKeys.size(); ++row) {
    QSlider* const slider = fParamSliders[row];
    QLineEdit* const field = fParamFields[row];
    slider->installEventFilter(this);
    connect(slider, &QSlider::valueChanged, this, [this, slider] { actUpdateSettings(slider); });
    // Every change, not only what is typed: assistive programs set the whole text.
    connect(field, &QLineEdit::textChanged, this, [this, field] { controlTextDidChange(field); });
  }
}

void VeltrixParamController::actUpdateSettings(QObject* sender) {
  const int tag = sender != nullptr ? sender->property(kTag).toInt() : 0;
  if (fShowsParams || tag < kFirstTag || tag > kLastTag) {
    return;
  }
  vtxGetParamsFromUI(true);
  vtxGetUIFromParams();
}

void VeltrixParamController::vtxGetUIFromParams() {
  const QScopedValueRollback<bool> showing(fShowsParams, true);
  for (std::size_t row = 0; row < kKeys.size(); ++row) {
    const std::int32_t value = fScrollParamDict.int32For(kKeys[row]);
    fParamSliders[row]->setValue(value);
    showInField(fParamFields[row], value);
  }
}

void VeltrixParamController::vtxGetParamsFromUI(bool fromSliders) {
  for (std::size_t row = 0; row < kKeys.size(); ++row) {
    const std::int32_t value =
        fromSliders ? fParamSliders[row]->value() : veltrix::typedInteger(textOf(*fParamFields[row]));
    fScrollParamDict.set(kKeys[row], value);
  }
}

void VeltrixParamController::controlTextDidChange(QObject* field) {
  if (fShowsParams || field == nullptr) {
    return;
  }
  vtxGetParamsFromUI(false);
  vtxGetUIFromParams();
}

bool VeltrixParamController::eventFilter(QObject* watched, QEvent* event) {
  const auto* slider = qobject_cast<QSlider*>(watched);
  if (event->type() == QEvent::Wheel && slider != nullptr && !slider->hasFocus()) {
    event->ignore();
    return true;
  }
  return QObject::eventFilter(watched, event);
}
