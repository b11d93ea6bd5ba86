#pragma once

#include <QtCore/QString>

class QObject;

namespace identify {

// The names by which tests address objects.

// The object's name: its objectName(), else a name derived from what the user sees (the one action of a tool
// button, the text of a push button, the class of a widget in an input dialog), else "unnamed".
QString getName(const QObject* object);

// Whether getName() would return that name, compared without building it.
bool hasName(const QObject* object, const QString& name);

// Whether the object's own class has exactly this name; a subclass does not count.
bool isA(const QObject* object, const char* className);

// The name of an object for which no rule gives one.
extern const QLatin1String unnamed;

} // namespace identify
