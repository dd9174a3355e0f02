#pragma once

#include <QObject>
#include <array>
#include <cstdint>

#include "editor/editor_host.h"
#include "platform/property_list.h"

class QDialog;
class QLineEdit;
class QSlider;
class QWidget;

// The sheet with the five scroll parameters of a device entry, each a slider and a field that follow one
// another. It works on a copy, which replaces the entry's "param" after OK. On the main thread only.
class VeltrixParamController : public QObject {
  Q_OBJECT

 public:
  // The host must outlive the controller; the sheet becomes a child of `parent` when it is opened first.
  VeltrixParamController(veltrix::EditorHost* host, QWidget* parent);
  ~VeltrixParamController() override;

  // True when the person confirmed, and the entry then holds the new parameters, all five; false without a
  // sheet when the entry has none.
  bool editScrollParams(veltrix::plist::Dictionary entry);

  // Once, when the widgets have been made.
  void awakeFromNib();

  // A slider was moved: all values come from the sliders. Senders with other tags than 1 to 6 do not count.
  void actUpdateSettings(QObject* sender);

  // The copy to the controls. Sliders stop at their ends; fields show every value.
  void vtxGetUIFromParams();

  // The controls to the copy: always all five, from the sliders or from the fields.
  void vtxGetParamsFromUI(bool fromSliders);

  // The text of `field` was changed: all values come from the fields, which show at once how they are read.
  // Nothing without a field.
  void controlTextDidChange(QObject* field);

 protected:
  // Leaves the wheel over a slider that is not in use to whatever lies below.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  static constexpr std::size_t kMostParams = 9;  // room for more than there are

  void makeWindow();

  QWidget* fParent;
  veltrix::EditorHost* outControllerMain;
  QDialog* outParamWindow = nullptr;
  QSlider* outParamSlider1 = nullptr;
  QSlider* outParamSlider2 = nullptr;
  QSlider* outParamSlider3 = nullptr;
  QSlider* outParamSlider4 = nullptr;
  QSlider* outParamSlider5 = nullptr;
  QSlider* outParamSlider6 = nullptr;
  QSlider* outParamSlider7 = nullptr;
  QSlider* outParamSlider8 = nullptr;
  QSlider* outParamSlider9 = nullptr;
  QLineEdit* outParamField1 = nullptr;
  QLineEdit* outParamField2 = nullptr;
  QLineEdit* outParamField3 = nullptr;
  QLineEdit* outParamField4 = nullptr;
  QLineEdit* outParamField5 = nullptr;
  QLineEdit* outParamField6 = nullptr;
  QLineEdit* outParamField7 = nullptr;
  QLineEdit* outParamField8 = nullptr;
  QLineEdit* outParamField9 = nullptr;
  std::array<QSlider*, kMostParams> fParamSliders{};
  std::array<QLineEdit*, kMostParams> fParamFields{};
  veltrix::plist::Dictionary fScrollParamDict;
  bool fShowsParams = false;  // controls are being set; what they report is not the person's doing
};
