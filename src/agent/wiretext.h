#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace agent {

// Each character as at least two lower-case hexadecimal digits. Characters above U+00FF make three or four digits
// without a separator, which decodehex() cannot tell apart: only texts up to U+00FF come back as they were.
QString encodehex(const QString& text);

// One character up to U+00FF for each two hexadecimal digits, of either case. A pair that is no number is U+0000; a
// last single digit counts as a pair.
QString decodehex(const QString& hex);

// The text whose UTF-8 the hexadecimal digits are, of either case. Not ok, and empty, where they are no pairs of digits;
// bytes that are no UTF-8 are U+FFFD.
QString decodeUtf8Hex(const QByteArray& hex, bool* ok);

} // namespace agent
