#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <cstddef>
#include <cstdint>

// Shared by all fuzz targets. LLVMFuzzerInitialize() is here, too: it makes an application on the offscreen platform
// whose clock is virtual (virtualclock.h).
namespace fuzzing {

// Ends the process with a message, which libFuzzer takes for a finding, unless `holds`.
void check(bool holds, const char* rule, const QString& detail);

template <class Value>
void checkEqual(const Value& actual, const Value& expected, const char* rule, const QString& detail)
{
    check(actual == expected, rule, detail);
}

// The text with everything beyond printable ASCII escaped, for messages.
QString printable(const QString& text);

// The part of a text that a message shows: it ends where texts end in C.
QString shown(const QString& text);

// An input as Latin-1 text, so that every byte is a character, and its lines. "\u" and four hexadecimal digits are the
// character of that number; so inputs stay readable, and each character up to U+FFFF can be reached.
QString textOf(const uint8_t* data, std::size_t size);
QStringList linesOf(const uint8_t* data, std::size_t size);

} // namespace fuzzing
