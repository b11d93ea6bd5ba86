#include "record/menuaction.h"

#include "compat/widgets.h"

#include <QKeySequence>
#include <QMenu>
#include <QMouseEvent>
#include <QStyle>

namespace record {

namespace {

const QAction* triggered(const QAction* action)
{
    const bool triggers = action && action->isEnabled() && !action->isSeparator() && !action->menu();
    return triggers ? action : nullptr;
}

// The only entry with this mnemonic: of several, the menu goes from one to the next.
const QAction* actionOfMnemonic(const QMenu& menu, QChar character)
{
    const QKeySequence wanted = QKeySequence::mnemonic(QLatin1Char('&') + QString(character.toUpper()));
    const QAction* found = nullptr;
    const QList<QAction*> actions = menu.actions();
    for (const QAction* action : actions) {
        const bool isShown = action->isVisible() && action->isEnabled() && !action->isSeparator();
        if (!isShown || wanted.isEmpty() || QKeySequence::mnemonic(action->text()) != wanted)
            continue;
        if (found)
            return nullptr;
        found = action;
    }
    return found;
}

} // namespace

const QAction* actionChosenBy(const QMouseEvent& release, const QMenu& menu)
{
    const QAction* action = menu.actionAt(compat::positionOf(release));
    return action == menu.activeAction() ? triggered(action) : nullptr;
}

const QAction* actionChosenBy(const QKeyEvent& press, const QMenu& menu)
{
    const int key = press.key();
    const bool isSpace
        = key == Qt::Key_Space && menu.style()->styleHint(QStyle::SH_Menu_SpaceActivatesItem, nullptr, &menu);
    if (key == Qt::Key_Return || key == Qt::Key_Enter || isSpace)
        return triggered(menu.activeAction());
    const bool isPlain = !(press.modifiers() & ~(Qt::ShiftModifier | Qt::AltModifier | Qt::KeypadModifier));
    return isPlain && press.text().size() == 1 && press.text().at(0).isPrint()
        ? triggered(actionOfMnemonic(menu, press.text().at(0)))
        : nullptr;
}

} // namespace record
