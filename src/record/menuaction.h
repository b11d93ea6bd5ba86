#pragma once

class QAction;
class QKeyEvent;
class QMenu;
class QMouseEvent;

namespace record {

// The action that the menu is about to trigger in the event; null when it does not. Asked before the menu handles the
// event, since the action may open a dialog that stays open.
const QAction* actionChosenBy(const QMouseEvent& release, const QMenu& menu);
const QAction* actionChosenBy(const QKeyEvent& press, const QMenu& menu);

} // namespace record
