#pragma once

#include <QtCore/QString>

class QObject;

// The names by which tests address objects.

// The object's name: its objectName(), else a name derived from what the user sees (the one action of a tool
// button, the text of a push button, the class of a widget in an input dialog), else "unnamed".
QString getName(const QObject* object);

// Whether getName() gives that name, told without making it.
bool hasName(const QObject* object, const QString& name);

// Turns a label into an identifier: "&Save as..." becomes "SaveAs...". The text without any letter becomes the one
// character U+0000, never the empty text.
QString syntheticName(QString text);

// Whether syntheticName() makes that name of the text, told without making it where the text is ASCII.
bool isSyntheticName(const QString& text, const QString& name);

// Whether the object's own class has exactly this name; a subclass does not count.
bool isA(const QObject* object, const char* className);

// The suffixes of derived names. They are part of the name.
extern const QLatin1String actionButtonSuffix;
extern const QLatin1String dialogButtonSuffix;
extern const QLatin1String inputDialogSuffix;

// The name of an object for which no rule gives one.
extern const QLatin1String unnamed;

// A name without its suffix: what a derived name is derived from.
QString withoutSuffix(const QString& name, QLatin1String suffix);

// Whether the object is of the kind that one of the three derivations is for, and its derived name is this one with the
// derivation's suffix. Its own name is not looked at. The stem may be empty, unlike that
// of a derived name.
bool hasActionButtonStem(const QObject* object, const QString& stem);
bool hasDialogButtonStem(const QObject* object, const QString& stem);
bool hasInputDialogChildStem(const QObject* object, const QString& stem);
