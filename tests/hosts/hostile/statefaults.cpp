// Faults that change widgets, or end them.

#include "commonfaults.h"
#include "stage.h"
#include "watchfulapplication.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMenu>
#include <QWidget>

namespace {

QWidget* widgetOf(QObject* sender)
{
    while (sender && !sender->isWidgetType())
        sender = sender->parent();
    return static_cast<QWidget*>(sender);
}

// Objects that an application may destroy or take elsewhere and expect Qt to stand it.
bool isOwn(const QObject* object)
{
    return object && object->property("own").toBool();
}

// Whether to move the focus on would have a view change its current item while it may just be changing it: so it does when
// the editor of an item is hidden or disabled.
bool mustKeepFocus()
{
    return isEditor(QApplication::focusWidget()) && !WatchfulApplication::isFirstHand();
}

// Qt's isAncestorOf() ends at windows, and would have a main window put into its own dialog.
bool isWithin(const QWidget* widget, const QWidget* ancestor)
{
    while (widget && widget != ancestor)
        widget = widget->parentWidget();
    return widget != nullptr;
}

} // namespace

bool isEditor(const QObject* object)
{
    const QObject* viewport = object ? object->parent() : nullptr;
    const auto* view = viewport ? qobject_cast<const QAbstractItemView*>(viewport->parent()) : nullptr;
    return view && object->isWidgetType() && view->viewport() == viewport && !view->inherits("QHeaderView");
}

void destroySender(Stage& stage, QObject* sender)
{
    if (isOwn(sender))
        stage.destroy(sender);
}

void destroyParent(Stage& stage, QObject* sender)
{
    QObject* victim = sender->parent();
    while (victim && !isOwn(victim))
        victim = victim->parent();
    stage.destroy(victim);
}

void destroyWindow(Stage& stage, QObject* sender)
{
    const QWidget* widget = widgetOf(sender);
    if (widget && isOwn(widget->window()))
        stage.destroy(widget->window());
}

void destroyEditor(Stage& stage, QObject* object, int key)
{
    // At these keys Qt remembers the editor, to close it in a moment.
    const bool closes = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Tab || key == Qt::Key_Backtab
        || key == Qt::Key_Escape;
    if (!closes && isEditor(object))
        stage.destroy(object);
}

void destroyRandomWidget(Stage& stage, QObject*)
{
    QWidget* widget = stage.randomWidget();
    if (isOwn(widget))
        stage.destroy(widget);
}

void destroyPopup(Stage& stage, QObject*)
{
    // The list of a combo box is a popup, too, but none that an application can destroy.
    stage.destroy(qobject_cast<QMenu*>(QApplication::activePopupWidget()));
}

void destroyLater(Stage&, QObject* sender)
{
    if (isOwn(sender))
        sender->deleteLater();
}

void reparentSender(Stage& stage, QObject* sender)
{
    if (!isOwn(sender) || !sender->isWidgetType())
        return;
    auto* widget = static_cast<QWidget*>(sender);
    QWidget* place = stage.chance.oneIn(2) ? nullptr : stage.randomWidget();
    if (place && (!isOwn(place) || !place->layout() || isWithin(place, widget)))
        return;
    // Qt 6 leaves the old window with a pointer to what had the focus in it.
    QWidget* focus = widget->window()->focusWidget();
    if (focus && (focus == widget || widget->isAncestorOf(focus)))
        stage.undisturbed([focus] { focus->clearFocus(); });
    stage.undisturbed([=] { widget->setParent(place); });
    widget->show();
    if (!place)
        stage.addStray(widget);
}

void doSceneTrick(Stage& stage, QObject* sender)
{
    const QList<Stage::Trick> tricks = stage.sceneTricks();
    if (!tricks.isEmpty())
        stage.undisturbed([&] { tricks.at(stage.chance.below(static_cast<int>(tricks.size())))(sender); });
}

void hideSender(Stage&, QObject* sender)
{
    QWidget* widget = widgetOf(sender);
    if (widget && !mustKeepFocus()) {
        widget->setProperty("hiddenBySabotage", true);
        widget->hide();
    }
}

void disableSender(Stage&, QObject* sender)
{
    QWidget* widget = widgetOf(sender);
    if (widget && !mustKeepFocus()) {
        widget->setProperty("disabledBySabotage", true);
        widget->setEnabled(false);
    }
}

void disableWindow(Stage& stage, QObject*)
{
    if (stage.window() && !mustKeepFocus())
        stage.window()->setEnabled(false);
}

void rename(Stage& stage, QObject* sender)
{
    const char* const names[] = {"", "button", "renamed", "unnamed", "ActivePopupWidget"};
    sender->setObjectName(QLatin1String(names[stage.chance.below(5)]));
}

void stealFocus(Stage& stage, QObject*)
{
    if (QWidget* thief = stage.randomWidget())
        thief->setFocus();
}

void clearFocus(Stage&, QObject*)
{
    if (QWidget* focus = QApplication::focusWidget())
        focus->clearFocus();
}

void grabMouse(Stage&, QObject* sender)
{
    QWidget* widget = widgetOf(sender);
    if (widget && widget->isVisible())
        widget->grabMouse();
}

void grabKeyboard(Stage&, QObject* sender)
{
    QWidget* widget = widgetOf(sender);
    if (widget && widget->isVisible())
        widget->grabKeyboard();
}

void warpCursor(Stage& stage, QObject*)
{
    QCursor::setPos(stage.chance.below(1280), stage.chance.below(1024));
}

void removePostedEvents(Stage&, QObject* sender)
{
    QCoreApplication::removePostedEvents(sender, QEvent::KeyPress);
    QCoreApplication::removePostedEvents(sender, QEvent::MouseButtonRelease);
}

void postInputOfItsOwn(Stage& stage, QObject*)
{
    const int keys[] = {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Tab, Qt::Key_Up, Qt::Key_Down, Qt::Key_Home};
    QWidget* focus = QApplication::focusWidget();
    // A view that closes its editor hands it what was posted to it, and does not stand it if that changes the current item.
    if (focus && !isEditor(focus)) {
        const int key = keys[stage.chance.below(6)];
        QCoreApplication::postEvent(focus, new QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier));
        QCoreApplication::postEvent(focus, new QKeyEvent(QEvent::KeyRelease, key, Qt::NoModifier));
    }
}
