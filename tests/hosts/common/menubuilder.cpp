#include "menubuilder.h"

#include "testhost.h"

#include <QAction>
#include <QApplication>
#include <QMenu>

namespace {

QString nameOf(const QWidget* widget)
{
    return widget ? widget->objectName() : QString::fromLatin1("none");
}

} // namespace

QMenu* MenuBuilder::menu(QWidget* owner, const char* name, const char* title) const
{
    auto* menu = new QMenu(QString::fromLatin1(title), owner);
    menu->setObjectName(QLatin1String(name));
    menu->menuAction()->setObjectName(QLatin1String(name) + QLatin1String("Action"));
    host.journalSignal(menu, SIGNAL(aboutToShow()), QLatin1String("shown"));
    host.journalSignal(menu, SIGNAL(aboutToHide()), QLatin1String("hidden"));
    host.journalInput(menu);
    return menu;
}

QMenu* MenuBuilder::submenu(QWidget* menuOrBar, const char* name, const char* title) const
{
    QMenu* added = menu(menuOrBar, name, title);
    menuOrBar->addAction(added->menuAction());
    watch(added->menuAction());
    return added;
}

QAction* MenuBuilder::item(QWidget* menuOrBar, const QString& name, const QString& text) const
{
    auto* action = new QAction(text, menuOrBar);
    action->setObjectName(name);
    menuOrBar->addAction(action);
    watch(action);
    return action;
}

QAction* MenuBuilder::item(QWidget* menuOrBar, const char* name, const char* text) const
{
    return item(menuOrBar, QString::fromLatin1(name), QString::fromLatin1(text));
}

QAction* MenuBuilder::checkable(QWidget* menu, const char* name, const char* text, bool checked) const
{
    QAction* action = item(menu, name, text);
    action->setCheckable(true);
    action->setChecked(checked);
    return action;
}

QAction* MenuBuilder::separator(QWidget* menu, const char* text) const
{
    QAction* action = item(menu, "separator", text);
    action->setSeparator(true);
    return action;
}

void MenuBuilder::watch(QAction* action) const
{
    host.journalSignal(action, SIGNAL(triggered()), QLatin1String("triggered"));
    host.journalValue(action, SIGNAL(toggled(bool)), QLatin1String("toggled"));
}

void journalInputState(TestHost& host)
{
    host.onRequest(QLatin1String("state"), [&host] {
        host.journal(QString::fromLatin1("state popup %1 focus %2 modal %3")
                         .arg(nameOf(QApplication::activePopupWidget()), nameOf(QApplication::focusWidget()),
                             nameOf(QApplication::activeModalWidget())));
    });
}
