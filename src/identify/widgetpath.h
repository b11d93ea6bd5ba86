#pragma once

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

class QWidget;

// Widget paths: the names of a widget and of ancestors, outermost first, joined by "/". The last element names the
// widget, each one before it the parent of what follows. An empty element is a gap: any number of levels.

// The path's elements, empty ones kept.
QStringList splitPath(const QString& path);

// The name to search for: the last element, or the empty text (not null) when that is "unnamed".
QString searchName(const QStringList& path);

// Replaces `result` with the widgets below `parent`, and `parent` itself, that carry the name. In order: those with
// this object name, in child order; those without any object name whose derived name it is; `parent`.
void widgetList(QList<QWidget*>& result, QWidget* parent, const QString& name);

// Whether the path fits the widget and its ancestors up to and including `top`.
bool checkPath(const QWidget* widget, const QWidget* top, const QStringList& path);
