#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QString>

namespace compat {

template <class Type>
void appendChildren(const QObject* parent, const QString& name, QList<Type*>& found)
{
    for (QObject* child : parent->children()) {
        if (!child)
            continue;
        auto* candidate = qobject_cast<Type*>(child);
        if (candidate && (name.isNull() || candidate->objectName() == name))
            found.append(candidate);
        appendChildren(child, name, found);
    }
}

// Finds what QObject::findChildren() finds, in the same order: all objects of the type below the parent, of that name
// unless it is null. Qt 6's own function crashes when an event loop runs in the destructor of one of them: the list of
// children then has a null pointer in the place of each deleted child.
template <class Type>
QList<Type*> findChildren(const QObject* parent, const QString& name = QString())
{
    QList<Type*> found;
    appendChildren(parent, name, found);
    return found;
}

// As QObject::findChild(): the first object of the type below the parent, one right below it before those further down.
template <class Type>
Type* findChild(const QObject* parent)
{
    for (QObject* child : parent->children()) {
        if (auto* found = qobject_cast<Type*>(child))
            return found;
    }
    for (QObject* child : parent->children()) {
        if (auto* found = child ? findChild<Type>(child) : nullptr)
            return found;
    }
    return nullptr;
}

} // namespace compat
