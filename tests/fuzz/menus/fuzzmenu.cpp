#include "fuzzmenu.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

namespace {

const int maximumItems = 20;
const int maximumDepth = 4;

int depthOf(const QString& line)
{
    int depth = 0;
    while (line.mid(depth, 1) == QLatin1String(">"))
        ++depth;
    return qMin(depth, maximumDepth);
}

// The signs of a line and its text, without the levels.
QAction* makeAction(QString line, QObject* parent)
{
    while (line.startsWith(QLatin1Char('>')))
        line.remove(0, 1);
    int signCount = 0;
    while (signCount < line.size() && QLatin1String("!#*+-").contains(line.at(signCount)))
        ++signCount;
    const QString signs = line.left(signCount);
    auto* action = new QAction(line.mid(signCount), parent);
    action->setVisible(!signs.contains(QLatin1Char('!')));
    action->setEnabled(!signs.contains(QLatin1Char('#')));
    action->setCheckable(signs.contains(QLatin1Char('*')) || signs.contains(QLatin1Char('+')));
    action->setChecked(signs.contains(QLatin1Char('+')));
    action->setSeparator(signs.contains(QLatin1Char('-')));
    return action;
}

} // namespace

FuzzMenu::FuzzMenu(const QStringList& lines)
    : window(new QMainWindow)
    , popup(new QMenu)
{
    const QStringList items = lines.mid(0, maximumItems);
    int next = 0;
    fill(popup.get(), items, next, 0);
    next = 0;
    fill(window->menuBar(), items, next, 0);
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

void FuzzMenu::fill(QWidget* menuOrBar, const QStringList& lines, int& next, int depth)
{
    while (next < lines.size() && depthOf(lines.at(next)) >= depth) {
        const int number = next;
        QAction* action = makeAction(lines.at(next++), menuOrBar);
        menuOrBar->addAction(action);
        QObject::connect(
            action, &QAction::triggered, [this, number] { triggeredItems.append(QString::number(number)); });
        if (next < lines.size() && depthOf(lines.at(next)) > depth) {
            auto* submenu = new QMenu(menuOrBar);
            fill(submenu, lines, next, depth + 1);
            action->setMenu(submenu);
        }
        action->setObjectName(QString::number(number));
    }
}
