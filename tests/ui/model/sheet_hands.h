#pragma once

#include <string>

#include "tests/ui/model/steps.h"

class QDialog;
class QWidget;

// A person's hands on the dialogs of the pane.
namespace veltrix::model {

// A keystroke that a person may record.
struct Keys {
  const char* name;
  int key;        // Qt's
  int held;       // Qt's modifiers
  int keyCode;    // what is to be recorded
  int modifiers;  // of it
};
const Keys& keysAt(int number);

void clickRow(QDialog* dialog, const char* column, int row);
void clickBoxOf(QDialog* dialog, const char* name);
void chooseSpeedOf(QDialog* dialog, int amount);
void pressKeysIn(QDialog* dialog, const Keys& keys);

// Replaces the text of a field; a line feed is the Return key.
void typeOver(QDialog* dialog, const char* field, const std::string& text);

void moveSliderOf(QDialog* dialog, const char* slider, int step);

// Return and Escape are pressed in `field`.
void endDialog(QDialog* dialog, Ending ending, const char* field);

}  // namespace veltrix::model
