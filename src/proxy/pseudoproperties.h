#pragma once

#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <cstddef>

// One row of a proxy's table of pseudo-properties: its name and how it is read from the widget.
template <class Widget>
struct PseudoProperty
{
    const char* name;
    QVariant (*read)(const Widget& widget);
};

// The names of the rows, in their order.
template <class Widget, std::size_t size>
QStringList namesOf(const PseudoProperty<Widget> (&rows)[size])
{
    QStringList names;
    for (const PseudoProperty<Widget>& row : rows)
        names.append(QString::fromLatin1(row.name));
    return names;
}

// The value of the row with exactly that name, invalid when there is none.
template <class Widget, std::size_t size>
QVariant valueOf(const PseudoProperty<Widget> (&rows)[size], const Widget& widget, const char* name)
{
    for (const PseudoProperty<Widget>& row : rows) {
        if (qstrcmp(name, row.name) == 0)
            return row.read(widget);
    }
    return QVariant();
}
