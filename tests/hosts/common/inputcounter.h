#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QObject>
#include <QtCore/QVariant>

// Counts what reaches any object of the application as input, but moves of the mouse: the property "input" of the
// object "application".
class InputCounter : public QObject
{
public:
    InputCounter()
        : QObject(QCoreApplication::instance())
    {
        setObjectName(QLatin1String("application"));
        setProperty("input", 0);
        QCoreApplication::instance()->installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::Shortcut:
            setProperty("input", property("input").toInt() + 1);
            break;
        default:
            break;
        }
        return false;
    }
};
