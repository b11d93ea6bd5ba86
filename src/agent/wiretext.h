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

// Decodes hexadecimal digits of either case as UTF-8. Where they are no pairs of digits, `ok` is false and the text
// empty; bytes that are no UTF-8 become U+FFFD.
QString decodeUtf8Hex(const QByteArray& hex, bool* ok);

} // namespace agent
