#pragma once

#include <cstdint>

class QDialog;

namespace veltrix {

// What the editors need of the pane that opens them.
class EditorHost {
 public:
  virtual ~EditorHost() = default;

  // Runs a dialog as a sheet of the pane's window; 1 means that it was confirmed.
  virtual std::int32_t modalDialog(QDialog* window) = 0;

  // The end of the dialog that runs, with 1 and with 0.
  virtual void actModalButtonOK() = 0;
  virtual void actModalButtonCancel() = 0;

  // The device pages, counted from 0; negative without one.
  virtual std::int32_t vtxCurDeviceTabIndex() const = 0;

  // The place of a button among those of the current device.
  virtual std::int32_t vtxCurAssignmentTabIndex(std::int32_t button) const = 0;
};

}  // namespace veltrix
