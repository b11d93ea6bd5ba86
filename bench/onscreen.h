#pragma once

#include <QApplication>
#include <QWidget>
#include <QtCore/QElapsedTimer>
#include <QtCore/QPoint>

// Shared by benchmarks of input, which need a window that the window manager has made the active one.

// Processes events until the condition holds; ends the program when it does not within ten seconds.
template <class Condition>
void processEventsUntil(Condition holds)
{
    const int deadlineMilliseconds = 10000;
    QElapsedTimer timer;
    timer.start();
    while (!holds()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        if (timer.elapsed() > deadlineMilliseconds)
            qFatal("waited in vain");
    }
}

inline void showActive(QWidget& window)
{
    window.show();
    window.raise();
    window.activateWindow();
    processEventsUntil([&window] { return window.isActiveWindow(); });
}

inline QPoint centerOf(const QWidget& widget)
{
    return widget.mapToGlobal(widget.rect().center());
}
