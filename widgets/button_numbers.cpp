#include "widgets/button_numbers.h"

#include <QCoreApplication>

namespace veltrix {
namespace {

QString tr(const char* text) {
  return QCoreApplication::translate("ButtonPicture", text);
}

}  // namespace

bool isChord(int number) {
  return number >= kFirstChord;
}

std::pair<int, int> buttonsOf(int number) {
  const int first = isChord(number) ? (number - kFirstChord) * 2 : number;
  return {first, isChord(number) ? first + 1 : first};
}

QString calloutCaption(int number) {
  const auto [first, second] = buttonsOf(number);
  if (isChord(number)) {
    return tr("Buttons %1 and %2 together").arg(first + 1).arg(second + 1);
  }
  return tr("Button %1").arg(first + 1);
}

QString buttonElement(int button) {
  return QStringLiteral("button%1").arg(button);
}

QStringList buttonElements(int number) {
  const auto [first, second] = buttonsOf(number);
  return first == second ? QStringList{buttonElement(first)}
                         : QStringList{buttonElement(first), buttonElement(second)};
}

}  // namespace veltrix
