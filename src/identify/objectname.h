#pragma once

#include <QtCore/QString>

class QObject;
class QPushButton;
class QToolButton;

// The names by which tests address objects.

// The object's name: its objectName(), else a name derived from what the user sees (the one action of a tool
// button, the text of a push button, the class of a widget in an input dialog), else "unnamed".
QString getName(const QObject* object);

// Turns a label into an identifier: "&Save as..." becomes "SaveAs...". The text without any letter becomes the one
// character U+0000, never the empty text.
QString syntheticName(QString text);

// Whether the object's own class has exactly this name; a subclass does not count.
bool isA(const QObject* object, const char* className);

// The suffixes of derived names. They are part of the name.
extern const QLatin1String actionButtonSuffix;
extern const QLatin1String dialogButtonSuffix;
extern const QLatin1String inputDialogSuffix;

// The name of an object for which no rule gives one.
extern const QLatin1String unnamed;

// The three derivations, each without a look at the object's own name. A tool button without exactly one named
// action has none, nor has a widget whose parent is not an input dialog: the empty text.
QString actionButtonName(const QToolButton* button);
QString dialogButtonName(const QPushButton* button);
QString inputDialogChildName(const QObject* object);
