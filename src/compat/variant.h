#pragma once

#include <QtCore/QVariant>

class QMetaProperty;
class QObject;

// QVariant, property reads and numbers as Qt 4.8 has them, on every Qt. Tests are written once and run against
// applications of all three majors, so the same value must read the same everywhere.
namespace compat {

// The QMetaType id of the value; QMetaType::UnknownType's number (0 in Qt 4 and 5 and 6) when it is invalid.
int typeOf(const QVariant& value);

// The value of a property, invalid when there is none, or one of a type that Qt does not know. Enumerations and flags
// are ints, whether or not their type is registered with the meta-type system. Makes Qt print no warning.
QVariant readProperty(const QObject* object, const char* name);
// The same of a property that the object's class has.
QVariant readProperty(const QObject* object, const QMetaProperty& property);
// Whether the values of a property are texts. Asking Qt takes longer than reading one, so callers keep the answer.
bool isTextProperty(const QMetaProperty& property);
// The value of such a property of the object's class, by its index; null where the application delivers no text for it.
QString readTextProperty(const QObject* object, int index);

// The value's text in the form of Qt 4.8's QVariant::toString(): doubles with 15 significant digits, floats with 6, bytes
// as Latin-1, times without milliseconds, colours without alpha, fonts with ten fields and weights from 0 to 99.
QString textOf(const QVariant& value);

// Parses a decimal integer as QString::toInt() does, but without copying a text of millions of characters. Where the
// text is none, `ok` is false and the result 0.
int toInt(const QString& text, bool* ok);

// Parses a number in the notation of the application's locale, or else of the C locale. Where the text is none, or too
// large for a float, infinity included, `ok` is false and the result 0. A number that is too small for a float is 0,
// and ok.
float toFloat(const QString& text, bool* ok);

} // namespace compat
