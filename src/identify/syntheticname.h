#pragma once

#include <QtCore/QString>

namespace identify {

// Turns a label into an identifier: "&Save as..." becomes "SaveAs...". The text without any letter becomes the one
// character U+0000, never the empty text.
QString syntheticName(QString text);

// Whether syntheticName() makes that name of the text; ASCII texts are compared without building it.
bool isSyntheticName(const QString& text, const QString& name);

} // namespace identify
