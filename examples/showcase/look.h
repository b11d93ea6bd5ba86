#pragma once

#include <QIcon>

class QApplication;

/// Colours and pictures of the roastery.
namespace Look {

/// Draws in the style \a style, or in the most pleasant one of this Qt where it is empty; false where there
/// is none of that name.
bool setStyle(const QString& style);

void setColors(QApplication& application);

QIcon bean(const QColor& color = QColor(0x6f, 0x45, 0x24));
QIcon cup();
QIcon stop();

} // namespace Look
