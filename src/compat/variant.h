#pragma once

#include <QtCore/QVariant>

class QMetaProperty;
class QObject;

// QVariant, property reads and numbers as Qt 4.8 has them, on every Qt. Tests are written once and run against
// applications of all three majors, so the same value must read the same everywhere.
namespace compat {

// The QMetaType id of the value; QMetaType::UnknownType's number (0 in Qt 4 and 5 and 6) when it is invalid.
int typeOf(const QVariant& value);

// The value of a property, invalid when there is none, or one of a type that Qt does not know. Enumerations and flags are
// ints, whether or not their type is registered with the meta-type system. Qt is not made to print anything.
QVariant readProperty(const QObject* object, const char* name);
// The same of a property that the object's class has.
QVariant readProperty(const QObject* object, const QMetaProperty& property);
// Whether the values of a property are texts. To tell that takes Qt longer than to read one.
bool isTextProperty(const QMetaProperty& property);
// The value of such a property of the object's class, by its index; null where the application delivers no text for it.
QString readTextProperty(const QObject* object, int index);

// The value's text in the form of Qt 4.8's QVariant::toString(): doubles with 15 significant digits, floats with 6, bytes
// as Latin-1, times without milliseconds, colours without alpha, fonts with ten fields and weights from 0 to 99.
QString textOf(const QVariant& value);

// The integer that a text is in base 10, as QString::toInt() tells it. Not ok, and 0, where there is none. Unlike that, it
// does not make copies of a text of millions of characters.
int toInt(const QString& text, bool* ok);

// The number that a text is, in the notation of the application's locale or else of the C locale. Not ok, and 0, where
// there is none, or one too large for a float, infinity included; one that is too small is 0.
float toFloat(const QString& text, bool* ok);

} // namespace compat
