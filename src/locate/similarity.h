#pragma once

#include <QtCore/QString>

namespace locate {

// How far a text is from another one: 0 for the same in another case of letters, 1 where one is within the other, more for
// those that differ in some letters; `farthest` for all others.
int distanceBetween(const QString& text, const QString& other);

const int farthest = 100;

} // namespace locate
