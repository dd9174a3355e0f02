#pragma once

#include <QObject>

#include "editor/editor_host.h"
#include "platform/property_list.h"

class QWidget;

// The sheet with the five scroll parameters of a device entry, each a slider and a field that follow one
// another. It works on a copy, which replaces the entry's "param" after OK. On the main thread only.
class VeltrixParamController : public QObject {
  Q_OBJECT

 public:
  // The host must outlive the controller; the sheet becomes a child of `parent` when it is opened first.
  VeltrixParamController(veltrix::EditorHost* host, QWidget* parent);
  ~VeltrixParamController() override;

  // True when the person confirmed, and the entry then holds the new parameters; false without a sheet when
  // the entry has none.
  bool editScrollParams(veltrix::plist::Dictionary entry);
};
