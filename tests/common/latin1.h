#pragma once

#include <QtCore/QString>

inline QString latin1(const char* text)
{
    return QString::fromLatin1(text);
}
