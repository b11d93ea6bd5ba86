#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QEvent>

namespace record {

enum class Family { Input, KeyRelease, Shortcut, Window, Close, Structure };

// A type of events that a recording looks at, and the word that tells of it.
struct KindRow
{
    QEvent::Type type;
    Family family;
    const char* kind;
};

// Null for types that it does not look at.
const KindRow* rowOf(QEvent::Type type);

// Whether the event tells what its widget was before it.
bool isInputKind(const QByteArray& kind);
bool isKeyKind(const QByteArray& kind);

} // namespace record
