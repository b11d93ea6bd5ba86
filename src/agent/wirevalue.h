#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace agent {

// Typed values on the wire.

// The value of a request's text: "s:TEXT", "b:true", "b:false", "i:NUMBER"; anything else is no value (invalid).
QVariant valueFromText(const QString& text);

// The value of a property's argument: only "s:TEXT" is one.
QVariant stringFromText(const QString& text);

// The whole reply for a property's value: "0,b:", "0,i:", "0,u:", "0,l:", "0,r:" or "0,x:" and the value, or code 8 for
// a type that has no text.
QByteArray replyForValue(const QVariant& value);

// "0,r:" and left, top, right, bottom; right and bottom are inclusive, as QRect has them.
QByteArray replyForRect(const QRect& rect);

} // namespace agent
