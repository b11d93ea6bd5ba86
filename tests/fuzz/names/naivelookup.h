#pragma once

#include "identify/widgetlookup.h"

// The rules of names and paths once more, slow and obvious, to compare the agent's own with.
namespace naive {

QString nameOf(const QWidget* widget);
identify::WidgetLookup findWidget(QWidget* window, const QString& path);
int findWindow(QWidget*& window, const QString& name);

} // namespace naive
