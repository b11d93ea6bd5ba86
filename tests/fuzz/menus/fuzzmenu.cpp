#include "fuzzmenu.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

namespace {

QAction* makeAction(const MenuItem& item, QObject* parent)
{
    auto* action = new QAction(item.text, parent);
    action->setObjectName(QString::number(item.line));
    action->setVisible(!item.isHidden);
    action->setEnabled(!item.isDisabled);
    action->setCheckable(item.isCheckable);
    action->setChecked(item.isChecked);
    action->setSeparator(item.isSeparator);
    return action;
}

} // namespace

FuzzMenu::FuzzMenu(const std::vector<MenuItem>& items)
    : window(new QMainWindow)
    , popup(new QMenu)
{
    fill(popup.get(), items);
    fill(window->menuBar(), items);
}

FuzzMenu::~FuzzMenu() = default;

QMenu* FuzzMenu::menu() const
{
    return popup.get();
}

QWidget* FuzzMenu::menuBar() const
{
    return window->menuBar();
}

void FuzzMenu::fill(QWidget* menuOrBar, const std::vector<MenuItem>& items)
{
    for (const MenuItem& item : items) {
        QAction* action = makeAction(item, menuOrBar);
        menuOrBar->addAction(action);
        QObject::connect(action, &QAction::triggered, [this, action] { triggeredItems.append(action->objectName()); });
        if (item.items.empty())
            continue;
        auto* submenu = new QMenu(menuOrBar);
        fill(submenu, item.items);
        action->setMenu(submenu);
    }
}
