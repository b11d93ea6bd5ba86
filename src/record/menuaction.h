#pragma once

class QAction;
class QKeyEvent;
class QMenu;
class QMouseEvent;

namespace record {

// The action that the menu is about to trigger in the event; null when it does not. Told before the menu has the event, since
// the action may open a dialog that lasts.
const QAction* actionChosenBy(const QMouseEvent& release, const QMenu& menu);
const QAction* actionChosenBy(const QKeyEvent& press, const QMenu& menu);

} // namespace record
