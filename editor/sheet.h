#pragma once

#include <QDialog>
#include <QPointer>
#include <memory>

namespace veltrix {

// Runs `dialog`, made with new, as a sheet of its parent's window. Gives it back when it was accepted; else
// it is gone, as it also is when its parent goes away meanwhile.
template <typename Dialog>
std::unique_ptr<Dialog> runSheet(Dialog* dialog) {
  const QPointer<Dialog> watched(dialog);
  dialog->setWindowModality(Qt::WindowModal);
  const int code = dialog->exec();
  std::unique_ptr<Dialog> owned(watched.data());
  if (code != QDialog::Accepted) {
    owned.reset();
  }
  return owned;
}

}  // namespace veltrix
