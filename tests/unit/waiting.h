#pragma once

#include <QtTest>

// Processes events until the condition holds; false when it does not within twenty seconds.
template <class Condition>
bool becomesTrue(Condition condition)
{
    const int deadlineMilliseconds = 20000;
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > deadlineMilliseconds)
            return false;
        QTest::qWait(5);
    }
    return true;
}
