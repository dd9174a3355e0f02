#pragma once

#include <QString>
#include <QStringList>
#include <utility>

namespace veltrix {

// Buttons have the numbers 0 to 3, chords 8 (buttons 0 and 1) and 9 (buttons 2 and 3); people count from 1.
inline constexpr int kFirstChord = 8;

bool isChord(int number);

// The two buttons of a chord, or the button twice.
std::pair<int, int> buttonsOf(int number);

// What people read at a button or a chord.
QString calloutCaption(int number);

// The id of the element that shows a button in a picture.
QString buttonElement(int button);

// The ids of the elements that show a button or the two buttons of a chord.
QStringList buttonElements(int number);

}  // namespace veltrix
