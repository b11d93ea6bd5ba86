#pragma once

#include <QtTest/QTest>

#include <QWidget>
#include <QtCore/QElapsedTimer>

// Runs the event loop until the condition holds; false when it has not after some seconds.
template <class Condition> bool waitUntil(Condition condition)
{
    const int deadlineMilliseconds = 5000;
    const int pauseMilliseconds = 2;
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > deadlineMilliseconds)
            return false;
        QTest::qWait(pauseMilliseconds);
    }
    return true;
}

// Shows the window and waits until it is the active one.
inline bool showActive(QWidget& window)
{
    window.show();
    window.raise();
    window.activateWindow();
    return waitUntil([&window] { return window.isActiveWindow() && window.isVisible(); });
}
