#pragma once

#include <QApplication>
#include <QTimerEvent>
#include <QtCore/QLibrary>

#include <cstdio>

// Loads the agent when the window manager has activated the window.
class AgentLoader : public QObject
{
public:
    explicit AgentLoader(const QString& path)
        : library(path)
    {
        startTimer(5);
    }

protected:
    void timerEvent(QTimerEvent* event) override
    {
        if (!QApplication::activeWindow())
            return;
        killTimer(event->timerId());
        const auto create = reinterpret_cast<void* (*)()>(library.resolve("createTestClient"));
        if (create)
            create();
        else
            std::fprintf(stderr, "%s\n", library.errorString().toLocal8Bit().constData());
    }

private:
    QLibrary library;
};
