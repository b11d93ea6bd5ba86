#include "locate/widgettexts.h"

#include "compat/widgettexts.h"

#include <QAction>
#include <QDockWidget>
#include <QGroupBox>
#include <QMdiSubWindow>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTextDocument>
#include <QToolBox>
#include <QToolButton>

namespace locate {

namespace {

bool visitSet(TextVisitor& visitor, const QString& text, Markup markup)
{
    return !text.isEmpty() && visitor.visit(text, markup);
}

// A tab widget has its pages in a stack, and a tool box each of them in a scroll area.
QString pageTitle(const QWidget* widget)
{
    const QWidget* outer = widget->parentWidget();
    const QWidget* container = outer ? outer->parentWidget() : nullptr;
    if (!container)
        return QString();
    if (qobject_cast<const QStackedWidget*>(outer)) {
        const auto* tabs = qobject_cast<const QTabWidget*>(container);
        return tabs ? tabs->tabText(tabs->indexOf(const_cast<QWidget*>(widget))) : QString();
    }
    const auto* area = qobject_cast<const QScrollArea*>(container);
    const auto* box = area && area->widget() == widget ? qobject_cast<const QToolBox*>(area->parentWidget()) : nullptr;
    return box ? box->itemText(box->indexOf(const_cast<QWidget*>(widget))) : QString();
}

// The action that a tool button stands for: its default one, or the only one that it has.
const QAction* actionOf(const QToolButton* button)
{
    if (const QAction* action = button->defaultAction())
        return action;
    const QList<QAction*> actions = button->actions();
    return actions.size() == 1 ? actions.first() : nullptr;
}

class FirstText : public TextVisitor
{
public:
    bool visit(const QString& text, Markup markup) override
    {
        shown = shownText(text, markup);
        return !shown.isEmpty();
    }

    QString shown;
};

} // namespace

bool readPlaceholder(const QWidget* widget, TextVisitor& visitor)
{
    return visitSet(visitor, compat::placeholderText(widget), Markup::None);
}

bool readToolTip(const QWidget* widget, TextVisitor& visitor)
{
    const QString tip = widget->toolTip();
    return visitSet(visitor, tip, Qt::mightBeRichText(tip) ? Markup::Rich : Markup::None);
}

bool readAccessibleName(const QWidget* widget, TextVisitor& visitor)
{
    return visitSet(visitor, compat::accessibleName(widget), Markup::None);
}

bool readTitle(const QWidget* widget, TextVisitor& visitor)
{
    if (const auto* box = qobject_cast<const QGroupBox*>(widget))
        return visitSet(visitor, box->title(), Markup::Mnemonics);
    if (qobject_cast<const QDockWidget*>(widget))
        return visitSet(visitor, widget->windowTitle(), Markup::Mnemonics);
    if (widget->isWindow() || qobject_cast<const QMdiSubWindow*>(widget))
        return visitSet(visitor, widget->windowTitle(), Markup::None);
    return visitSet(visitor, pageTitle(widget), Markup::Mnemonics);
}

bool readAction(const QWidget* widget, TextVisitor& visitor)
{
    const auto* button = qobject_cast<const QToolButton*>(widget);
    if (!button)
        return false;
    const QAction* action = actionOf(button);
    return action
        && (visitSet(visitor, action->objectName(), Markup::None)
            || visitSet(visitor, action->text(), Markup::Mnemonics));
}

QString firstShownText(const QWidget* widget, TextReader reader)
{
    FirstText first;
    reader(widget, first);
    return first.shown;
}

} // namespace locate
