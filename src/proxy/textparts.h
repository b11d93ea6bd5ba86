#pragma once

#include <QtCore/QStringList>

namespace proxy {

// The first parts of a text between separators, empty ones included, and no more of them than are wanted: what a test
// sends may be millions of separators long. Each part is a text of its own.
inline QStringList firstParts(const QString& text, QChar separator, int maximum)
{
    QStringList parts;
    int begin = 0;
    while (parts.size() < maximum) {
        const int end = static_cast<int>(text.indexOf(separator, begin));
        parts.append(text.mid(begin, end < 0 ? -1 : end - begin));
        if (end < 0)
            break;
        begin = end + 1;
    }
    return parts;
}

} // namespace proxy
