#pragma once

#include <QtCore/QList>
#include <QtCore/QStringList>

class QAction;

// The rules of menu paths once more, slow and obvious, to compare the agent's own with.
namespace naive {

// The item that the beginning of a path names; takes that beginning off the path. Null when there is none.
QAction* takeMenuItem(const QList<QAction*>& actions, QStringList& path);
QStringList menuItemList(const QList<QAction*>& actions);

// What a property of a menu or menu bar tells of a path: "true", "false" or the message of the error.
QString menuPathDisabled(const QList<QAction*>& actions, QStringList path);
QString barPathDisabled(const QList<QAction*>& actions, QStringList path);
QString barPathChecked(const QList<QAction*>& actions, QStringList path);

// What choosing a path in an open menu does: the object name of the item that is triggered, the empty text where a
// submenu opens, or the message.
QString chosenItem(const QList<QAction*>& actions, QStringList path);

} // namespace naive
