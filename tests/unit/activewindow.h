#pragma once

#include "waiting.h"

#include <QWidget>

// Shows the window and waits until it is the active one; false when it does not become so.
inline bool showActive(QWidget& window)
{
    window.show();
    window.raise();
    window.activateWindow();
    return becomesTrue([&window] { return window.isActiveWindow() && window.isVisible(); });
}
