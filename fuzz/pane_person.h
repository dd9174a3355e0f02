#pragma once

#include <QObject>
#include <QWidget>

#include "fuzz/byte_source.h"

class QDialog;

// Somebody who uses the widgets without knowing what they are for: the bytes choose a widget and what is done
// to it. A dialog that appears is used and then closed, so that whoever runs it goes on.
class PanePerson : public QObject {
 public:
  explicit PanePerson(ByteSource* bytes);
  ~PanePerson() override;

  // Does something to one of the widgets that can be used below `window`.
  void useSomething(QWidget* window);

  // The same with an open menu, which is then closed.
  void finishPopup();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void useDialog(QDialog* dialog);
  void use(QWidget* widget);

  ByteSource* fBytes;
};
