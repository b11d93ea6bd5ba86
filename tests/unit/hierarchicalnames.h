#pragma once

#include <QtCore/QStringList>

// A hierarchical name from a text such as "main/*/ok": "*" is the null element, nothing is the empty one.
inline QStringList hierarchicalName(const char* text)
{
    QStringList name;
    const QStringList elements = QString::fromLatin1(text).split(QLatin1Char('/'));
    for (const QString& element : elements) {
        if (element == QLatin1String("*"))
            name << QString();
        else
            name << (element.isEmpty() ? QString(QLatin1String("")) : element);
    }
    return name;
}
