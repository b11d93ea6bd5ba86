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

// The same as QObject::findChildren() in the same order: all objects of the type below the parent, with the name unless
// that is null. That of Qt 6 crashes while one of them is being deleted: an event loop can run in a destructor then, and
// the list of children has a null pointer in the place of each child that is gone.
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
