#include "identify/derivation.h"

#include "identify/syntheticname.h"

#include <QAction>
#include <QInputDialog>
#include <QPushButton>
#include <QToolButton>

namespace identify {

namespace {

// The button's action when it has exactly one.
const QAction* soleAction(const QObject* object)
{
    const auto* button = qobject_cast<const QToolButton*>(object);
    const QList<QAction*> actions = button ? button->actions() : QList<QAction*>();
    return actions.size() == 1 ? actions.first() : nullptr;
}

bool isActionButton(const QObject* object)
{
    const QAction* action = soleAction(object);
    return action && !action->objectName().isEmpty();
}

QString actionName(const QObject* button)
{
    return soleAction(button)->objectName();
}

bool hasActionName(const QObject* object, const QString& name)
{
    const QAction* action = soleAction(object);
    return action && action->objectName() == name;
}

bool isPushButton(const QObject* object)
{
    return qobject_cast<const QPushButton*>(object);
}

QString labelName(const QObject* button)
{
    return syntheticName(qobject_cast<const QPushButton*>(button)->text());
}

bool hasLabelName(const QObject* object, const QString& name)
{
    const auto* button = qobject_cast<const QPushButton*>(object);
    return button && isSyntheticName(button->text(), name);
}

bool isInputDialogChild(const QObject* object)
{
    return qobject_cast<const QInputDialog*>(object->parent());
}

QString className(const QObject* object)
{
    return QLatin1String(object->metaObject()->className());
}

bool hasClassName(const QObject* object, const QString& name)
{
    return isInputDialogChild(object) && name == QLatin1String(object->metaObject()->className());
}

// In the order in which they are tried.
const Derivation derivations[] = {
    {QLatin1String("_action_button"), isActionButton, actionName, hasActionName},
    {QLatin1String("_dialog_button"), isPushButton, labelName, hasLabelName},
    {QLatin1String("__widget__"), isInputDialogChild, className, hasClassName},
};

} // namespace

// Most names that are compared are object names: without the suffix, the widget need not be asked for its text.
bool Derivation::hasName(const QObject* object, const QString& name) const
{
    return name.endsWith(suffix) && hasStem(object, stemOfName(name));
}

QString Derivation::stemOfName(const QString& name) const
{
    return name.left(name.size() - static_cast<int>(qstrlen(suffix.latin1())));
}

const Derivation* derivationFor(const QObject* object)
{
    for (const Derivation& derivation : derivations) {
        if (derivation.applies(object))
            return &derivation;
    }
    return nullptr;
}

const Derivation* derivationOfName(const QString& name)
{
    for (const Derivation& derivation : derivations) {
        if (name.endsWith(derivation.suffix))
            return &derivation;
    }
    return nullptr;
}

} // namespace identify
