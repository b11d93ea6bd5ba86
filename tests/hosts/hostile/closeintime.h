#pragma once

#include "later.h"

#include <QPointer>

// Ends the loop of a nested dialog or menu, and tries again until it is over: what was hidden before its loop began has to
// be shown once more to be closed. What is being destroyed is left alone: the destructor runs handlers, which may run event
// loops, and the window is no longer a Window by then.
template <class Window>
void closeInTime(const QPointer<Window>& window, int milliseconds)
{
    const int retryMilliseconds = 20;
    Later::run(milliseconds, [=] {
        if (!qobject_cast<Window*>(static_cast<QObject*>(window.data())))
            return;
        if (!window->isVisible())
            window->show();
        window->close();
        // Qt 6 does not close what another modal window blocks, though it may do so for good.
        if (window)
            window->hide();
        closeInTime(window, retryMilliseconds);
    });
}
