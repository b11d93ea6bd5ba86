#pragma once

#include <QtCore/QString>

inline QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}
