#pragma once

#include <QtCore/QEvent>
#include <QtCore/QObject>

// An event filter that stops every event of one type.
class EventKiller : public QObject
{
public:
    explicit EventKiller(QEvent::Type type, QObject* parent = nullptr)
        : QObject(parent)
        , eventType(type)
    {
    }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QEvent::Type eventType;
};
