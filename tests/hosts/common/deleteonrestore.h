#pragma once

#include <QWidget>
#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtCore/QTimerEvent>

// Deletes a widget when its minimised window is shown again, which an acting command does before it acts. The
// widget is not deleted within the event but as soon as the application next handles its events.
class DeleteOnRestore : public QObject
{
public:
    explicit DeleteOnRestore(QWidget* widget)
        : target(widget)
    {
        widget->window()->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const bool restored
            = event->type() == QEvent::WindowStateChange && !static_cast<QWidget*>(watched)->isMinimized();
        if (restored)
            startTimer(0);
        return false;
    }

protected:
    void timerEvent(QTimerEvent* event) override
    {
        killTimer(event->timerId());
        delete target;
    }

private:
    QPointer<QWidget> target;
};
