#include "naivelookup.h"

#include <QAction>
#include <QApplication>
#include <QInputDialog>
#include <QPushButton>
#include <QToolButton>

namespace naive {

namespace {

QString derivedActionName(const QWidget* widget)
{
    const auto* button = qobject_cast<const QToolButton*>(widget);
    if (!button || button->actions().size() != 1)
        return QString();
    return button->actions().first()->objectName() + QLatin1String("_action_button");
}

// "&Save as..." is "SaveAs...": words, each with its first letter in upper case, run together.
QString derivedTextName(const QWidget* widget)
{
    const auto* button = qobject_cast<const QPushButton*>(widget);
    if (!button)
        return QString();
    QString name;
    QChar before = QLatin1Char(' ');
    const QString text = button->text().remove(QLatin1Char('&')).simplified().toLower();
    for (const QChar character : text) {
        if (character != QLatin1Char(' '))
            name += before == QLatin1Char(' ') ? QString(character).at(0).toUpper() : character;
        before = character;
    }
    return (name.isEmpty() ? QString(1, QChar()) : name) + QLatin1String("_dialog_button");
}

QString derivedClassName(const QWidget* widget)
{
    if (!widget->parentWidget() || !qobject_cast<const QInputDialog*>(widget->parentWidget()))
        return QString();
    return QLatin1String(widget->metaObject()->className()) + QLatin1String("__widget__");
}

bool carriesName(const QWidget* widget, const QString& name)
{
    if (widget->objectName() == name)
        return true;
    if (!widget->objectName().isNull() || name.isEmpty())
        return false;
    return derivedActionName(widget) == name || derivedTextName(widget) == name || derivedClassName(widget) == name;
}

// Whether the elements fit the chain, the names of a widget and of its ancestors up to the window.
bool fits(QStringList chain, QStringList elements)
{
    bool gap = false;
    while (!elements.isEmpty() && elements.last().isEmpty()) {
        gap = true;
        elements.removeLast();
    }
    if (elements.isEmpty())
        return true;
    while (gap && !chain.isEmpty() && chain.first() != elements.last())
        chain.removeFirst();
    if (chain.isEmpty() || chain.first() != elements.last())
        return false;
    chain.removeFirst();
    elements.removeLast();
    return elements.isEmpty() || (!chain.isEmpty() && fits(chain, elements));
}

QList<QWidget*> allWidgets(QWidget* top)
{
    QList<QWidget*> widgets;
    widgets.append(top);
    for (QObject* child : top->children()) {
        if (auto* widget = qobject_cast<QWidget*>(child))
            widgets += allWidgets(widget);
    }
    return widgets;
}

bool hasWindowName(const QWidget* window, const QString& name)
{
    const QString prefix = QLatin1String("Widget:");
    if (name.startsWith(prefix))
        return window->objectName() == name.mid(prefix.size());
    return window->windowTitle().left(name.size()) == name;
}

} // namespace

QString nameOf(const QWidget* widget)
{
    if (!widget->objectName().isEmpty())
        return widget->objectName();
    const QString actionName = derivedActionName(widget);
    if (!actionName.isEmpty() && actionName != QLatin1String("_action_button")) // of an action with a name
        return actionName;
    for (const QString& name : {derivedTextName(widget), derivedClassName(widget)}) {
        if (!name.isEmpty())
            return name;
    }
    return QLatin1String("unnamed");
}

identify::WidgetLookup findWidget(QWidget* window, const QString& path)
{
    const QStringList elements = path.split(QLatin1Char('/'));
    const QString name = elements.last() == QLatin1String("unnamed") ? QString() : elements.last();
    identify::WidgetLookup lookup;
    const QList<QWidget*> widgets = allWidgets(window);
    for (QWidget* widget : widgets) {
        // The window itself is found by its object name only.
        if (widget == window ? widget->objectName() != name : !carriesName(widget, name))
            continue;
        QStringList chain(nameOf(widget));
        for (const QWidget* step = widget; step != window; step = step->parentWidget())
            chain.append(nameOf(step->parentWidget()));
        if (!fits(chain, elements))
            continue;
        if (lookup.error == identify::WidgetNotFoundError)
            lookup.error = identify::WidgetNotVisibleError;
        if (!widget->isVisible())
            continue;
        lookup.widget = widget;
        lookup.error = ++lookup.visibleCount == 1 ? identify::NoError : identify::WidgetAmbiguousError;
    }
    return lookup;
}

int findWindow(QWidget*& window, const QString& name)
{
    const QStringList parts = name.split(QLatin1Char(':'));
    if (parts.first() == QLatin1String("Widget")
        && (parts.value(1) == QLatin1String("ActivePopupWidget")
            || parts.value(1) == QLatin1String("ActiveModalWidget"))) {
        const bool popup = parts.at(1) == QLatin1String("ActivePopupWidget");
        window = popup ? QApplication::activePopupWidget() : QApplication::activeModalWidget();
        const QString title = popup ? QString() : QStringList(parts.mid(2)).join(QLatin1String(":"));
        return window && window->isVisible() && window->windowTitle().left(title.size()) == title ? 1 : 0;
    }
    int count = 0;
    const QWidgetList topLevels = QApplication::topLevelWidgets();
    for (QWidget* widget : topLevels) {
        if (widget->isVisible() && hasWindowName(widget, name)) {
            window = widget;
            ++count;
        }
    }
    return count;
}

} // namespace naive
