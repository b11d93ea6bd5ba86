#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QObject>
#include <QtCore/QTimerEvent>

#include <functional>
#include <utility>

// Runs a function once, from an event loop, even from one that runs within another function of this kind.
class Later : public QObject
{
public:
    static void run(int milliseconds, std::function<void()> function)
    {
        new Later(milliseconds, std::move(function)); // deletes itself
    }

protected:
    void timerEvent(QTimerEvent* event) override
    {
        killTimer(event->timerId());
        const std::function<void()> copy = function;
        deleteLater();
        copy();
    }

private:
    Later(int milliseconds, std::function<void()> wanted)
        : QObject(QCoreApplication::instance())
        , function(std::move(wanted))
    {
        startTimer(milliseconds);
    }

    std::function<void()> function;
};
