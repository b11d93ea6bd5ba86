#include "identify/widgetpath.h"

#include "identify/objectname.h"

#include <QPushButton>
#include <QToolButton>
#include <QWidget>

namespace {

// Appends the widgets of a class below `parent` that never got an object name and whose derived name is `name`.
// An object name that was set, even to "", turns derived names off.
template <class Widget, class Derive>
void appendDerived(QList<QWidget*>& result, const QWidget* parent, const QString& name, Derive derivedName)
{
    const QList<Widget*> widgets = parent->findChildren<Widget*>();
    for (Widget* widget : widgets) {
        if (widget->objectName().isNull() && derivedName(widget) == name)
            result.append(widget);
    }
}

} // namespace

QStringList splitPath(const QString& path)
{
    return path.split(QLatin1Char('/'));
}

QString searchName(const QStringList& path)
{
    // Never null: to QObject::findChildren() a null name means "any".
    const QString& last = path.last();
    return last.isEmpty() || last == unnamed ? QString(QLatin1String("")) : last;
}

void widgetList(QList<QWidget*>& result, QWidget* parent, const QString& name)
{
    result = parent->findChildren<QWidget*>(name);
    if (name.endsWith(actionButtonSuffix))
        appendDerived<QToolButton>(result, parent, name, actionButtonName);
    if (name.endsWith(dialogButtonSuffix))
        appendDerived<QPushButton>(result, parent, name, dialogButtonName);
    if (name.endsWith(inputDialogSuffix))
        appendDerived<QWidget>(result, parent, name, inputDialogChildName);
    if (parent->objectName() == name)
        result.append(parent);
}

bool checkPath(const QWidget* widget, const QWidget* top, const QStringList& path)
{
    int element = path.size() - 1;
    while (true) {
        const bool afterGap = path.at(element).isEmpty();
        while (path.at(element).isEmpty()) {
            if (element == 0)
                return true;
            --element;
        }
        while (getName(widget) != path.at(element)) {
            if (!afterGap || widget == top)
                return false;
            widget = widget->parentWidget();
        }
        if (element == 0)
            return true;
        if (widget == top)
            return false;
        widget = widget->parentWidget();
        --element;
    }
}
