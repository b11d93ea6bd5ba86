#include "identify/objectname.h"

#include <QAction>
#include <QPushButton>
#include <QStringList>
#include <QToolButton>

#include <cstring>

const QLatin1String actionButtonSuffix("_action_button");
const QLatin1String dialogButtonSuffix("_dialog_button");
const QLatin1String inputDialogSuffix("__widget__");
const QLatin1String unnamed("unnamed");

QString getName(const QObject* object)
{
    const QString objectName = object->objectName();
    if (!objectName.isEmpty())
        return objectName;
    if (object->inherits("QToolButton")) {
        const QString name = actionButtonName(static_cast<const QToolButton*>(object));
        if (!name.isEmpty())
            return name;
    }
    if (object->inherits("QPushButton"))
        return dialogButtonName(static_cast<const QPushButton*>(object));
    const QString name = inputDialogChildName(object);
    return name.isEmpty() ? QString(unnamed) : name;
}

QString syntheticName(QString text)
{
    text.remove(QLatin1Char('&'));
    QStringList words = text.simplified().toLower().split(QLatin1Char(' '));
    for (QString& word : words) {
        // A label of blanks has one empty word. Writing its first character makes it one U+0000 long, so that such
        // a button still has a name of its own.
        if (word.isEmpty())
            word = QString(1, QChar());
        word[0] = word.at(0).toUpper();
    }
    return words.join(QString());
}

bool isA(const QObject* object, const char* className)
{
    return std::strcmp(object->metaObject()->className(), className) == 0;
}

QString actionButtonName(const QToolButton* button)
{
    const QList<QAction*> actions = button->actions();
    if (actions.size() != 1 || actions.first()->objectName().isEmpty())
        return QString();
    return actions.first()->objectName() + actionButtonSuffix;
}

QString dialogButtonName(const QPushButton* button)
{
    return syntheticName(button->text()) + dialogButtonSuffix;
}

QString inputDialogChildName(const QObject* object)
{
    if (!object->parent() || !object->parent()->inherits("QInputDialog"))
        return QString();
    return QLatin1String(object->metaObject()->className()) + inputDialogSuffix;
}
