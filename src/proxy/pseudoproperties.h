#pragma once

#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <cstddef>
#include <utility>

namespace proxy {

// One row of a table of properties that are computed: the name, and how the value is read from what the table's owner
// passes, such as the widget.
template <class... Parameters>
struct PseudoProperty
{
    const char* name;
    QVariant (*read)(Parameters... parameters);
};

// The names of the rows, in their order.
template <class... Parameters, std::size_t size>
QStringList namesOf(const PseudoProperty<Parameters...> (&rows)[size])
{
    QStringList names;
    for (const PseudoProperty<Parameters...>& row : rows)
        names.append(QString::fromLatin1(row.name));
    return names;
}

// The row of exactly that name, null when there is none.
template <class... Parameters, std::size_t size>
const PseudoProperty<Parameters...>* rowOf(const PseudoProperty<Parameters...> (&rows)[size], const char* name)
{
    for (const PseudoProperty<Parameters...>& row : rows) {
        if (qstrcmp(name, row.name) == 0)
            return &row;
    }
    return nullptr;
}

// The value of the row of exactly that name, invalid when there is none.
template <class... Parameters, std::size_t size, class... Arguments>
QVariant valueOf(const PseudoProperty<Parameters...> (&rows)[size], const char* name, Arguments&&... arguments)
{
    const PseudoProperty<Parameters...>* row = rowOf(rows, name);
    return row ? row->read(std::forward<Arguments>(arguments)...) : QVariant();
}

} // namespace proxy
