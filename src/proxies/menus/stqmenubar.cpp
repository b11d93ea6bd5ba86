#include "proxies/menus/stqmenubar.h"

#include "compat/reachable.h"
#include "compat/stacking.h"
#include "proxies/menus/menuitems.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>

namespace {

const char notFoundMessage[] = "Could not find %s";
const char elementDisabledMessage[] = "%s is disabled";

// The item of the path's first element; raises an error with that element's name when there is none.
const QAction* requiredItem(const QList<QAction*>& actions, QStringList& path)
{
    const QAction* item = menus::findMenuItem(actions, path);
    if (!item)
        proxy::raiseError(notFoundMessage, path.first());
    return item;
}

bool isMenuOpen(const QMenuBar& bar)
{
    const QList<QAction*> titles = bar.actions();
    return std::any_of(
        titles.begin(), titles.end(), [](const QAction* title) { return title->menu() && title->menu()->isVisible(); });
}

} // namespace

const proxy::PseudoProperty<STQMenuBar&, const QVariant&> STQMenuBar::pseudoProperties[] = {
    {"itemList",
        [](STQMenuBar& bar, const QVariant&) -> QVariant { return menus::menuItemList(bar.menuBar()->actions()); }},
    {"pathChecked",
        [](STQMenuBar& bar, const QVariant& argument) -> QVariant {
            return bar.pathChecked(bar.checkedPath(argument));
        }},
    {"pathDisabled",
        [](STQMenuBar& bar, const QVariant& argument) -> QVariant {
            return bar.pathDisabled(bar.checkedPath(argument));
        }},
};

QMenuBar* STQMenuBar::menuBar()
{
    return static_cast<QMenuBar*>(checkedWidget("QMenuBar"));
}

void STQMenuBar::activate(const QVariant& value, const QVariant& option)
{
    QStringList path = checkedPath(value, option);
    const QPointer<QAction> title(requiredTitle(path));
    const QPointer<QWidget> bar(menuBar());
    const QPointer<QWidget> focus(bar->window()->focusWidget());
    openMenu(title);
    path.removeFirst();
    chooseItem(title ? title->menu() : nullptr, path, option, [&] { closeMenu(bar, focus); });
}

void STQMenuBar::lookForItem(const QVariant& value)
{
    QStringList path = checkedPath(value);
    const QMenu* menu = requiredTitle(path)->menu();
    path.removeFirst();
    lookForEntry(menu, path);
}

// Changes the first element of the path to the title's text.
QAction* STQMenuBar::requiredTitle(QStringList& path)
{
    QAction* title = menus::findMenuItem(menuBar()->actions(), path);
    if (!title || !title->isEnabled() || !title->menu()) {
        const QString item = path.value(0);
        proxy::raiseNotYet(title && !title->isEnabled() ? proxy::disabledItem(item) : proxy::missingItem(item),
            menus::invalidPathMessage);
    }
    return title;
}

STWidgetProxy::ItemArea STQMenuBar::showItem(const QVariant& item)
{
    QStringList path = checkedPath(item);
    const QPointer<QAction> title(menus::findMenuItem(menuBar()->actions(), path));
    const QString name = path.value(0);
    if (!title)
        proxy::raiseNotYet(proxy::missingItem(name), menus::invalidPathMessage);
    path.removeFirst();
    if (path.isEmpty()) {
        const QRect rect = menuBar()->actionGeometry(title).intersected(menuBar()->rect());
        if (rect.isEmpty())
            proxy::raiseNotYet(proxy::hiddenItem(name), menus::invalidPathMessage);
        return {menuBar(), rect, title->isEnabled()};
    }
    if (!title->isEnabled())
        proxy::raiseNotYet(proxy::disabledItem(name), menus::disabledItemMessage);
    openByMouse(title, name);
    return showInMenu(title ? title->menu() : nullptr, path, 1);
}

void STQMenuBar::openByMouse(const QPointer<QAction>& title, const QString& name)
{
    const QPointer<QMenu> menu(title->menu());
    if (!menu)
        proxy::raiseNotYet(proxy::missingItem(name), menus::invalidPathMessage);
    if (menu->isVisible())
        return;
    // While another menu of the bar is open, the click would only close that.
    const int maximumDepth = 20;
    for (int i = 0; i < maximumDepth && isMenuOpen(*menuBar()); ++i)
        pressEscape();
    if (const QWidget* popup = QApplication::activePopupWidget())
        proxy::raiseNotYet(
            proxy::coveredBy(QLatin1String(popup->metaObject()->className())), menus::invalidPathMessage);
    if (title)
        clickOnTheWay(menuBar(), menuBar()->actionGeometry(title));
    awaitMenu(menu, name);
}

void STQMenuBar::openMenu(const QPointer<QAction>& title)
{
    // A click beside the titles closes what may be open, so that the menu opens from a known state.
    mouseClick(menuBar()->mapToGlobal(menuBar()->rect().topRight()), Qt::LeftButton, Qt::NoModifier);
    QMenuBar* bar = menuBar();
    if (!title)
        proxy::raiseError(menus::invalidPathMessage);
    bar->setActiveAction(title);
    syncEvents();
    keyClick(Qt::Key_Down, Qt::NoModifier);
}

void STQMenuBar::closeMenu(const QPointer<QWidget>& bar, const QPointer<QWidget>& focus)
{
    // The first key closes the menu, which leaves the keyboard with the bar; the second has the bar give it back.
    pressEscape();
    // Where Qt has lost the active window meanwhile, the keyboard stays with a widget of the closed menu.
    const QWidget* owner = QApplication::focusWidget();
    if (bar && bar->isVisible() && !(owner && owner->isVisible())) {
        compat::activateWindow(bar);
        if (bar)
            compat::waitUntilActive(bar);
        if (bar)
            compat::setFocus(bar);
    }
    pressEscape();
    // The bar does not restore the focus if the windowing system has given it to the menu's window meanwhile.
    if (bar && focus && focus != bar && bar->window()->focusWidget() == bar)
        focus->setFocus(Qt::OtherFocusReason);
}

QStringList STQMenuBar::pseudoPropertyNames()
{
    return proxy::namesOf(pseudoProperties);
}

QVariant STQMenuBar::pseudoProperty(const char* name, const QVariant& argument)
{
    return proxy::valueOf(pseudoProperties, name, *this, argument);
}

bool STQMenuBar::pathChecked(QStringList path)
{
    const QAction* item = menus::findMenuItem(menuBar()->actions(), path);
    path.removeFirst();
    while (!path.isEmpty() && item && item->menu()) {
        if (!item->isEnabled())
            proxy::raiseError(menus::disabledItemMessage);
        item = menus::findMenuItem(item->menu()->actions(), path);
        path.removeFirst();
    }
    if (!path.isEmpty() || !item)
        proxy::raiseError(menus::invalidItemMessage);
    if (!item->isCheckable())
        proxy::raiseError(menus::notCheckableMessage);
    return item->isChecked();
}

bool STQMenuBar::pathDisabled(QStringList path)
{
    const QAction* item = requiredItem(menuBar()->actions(), path);
    path.removeFirst();
    while (!path.isEmpty()) {
        if (!item->menu())
            proxy::raiseError(notFoundMessage, path.first());
        item = requiredItem(item->menu()->actions(), path);
        if (path.size() > 1 && !item->isEnabled())
            proxy::raiseError(elementDisabledMessage, path.first());
        path.removeFirst();
    }
    return !item->isEnabled();
}
