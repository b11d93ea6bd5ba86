#pragma once

#include <QPointer>
#include <QWidget>
#include <QtCore/QHash>

namespace locate {

// Numbers by which tests name widgets that have no names. A widget keeps its number as long as it lives, and no other
// one gets it. The numbers are kept here and not in a property of the widgets, which the application could see.
class References
{
public:
    // The numbers of this process. They outlive the agent, so that those of one connection are valid in the next.
    static References& all();

    // The widget's number; it gets one if it has none yet.
    qint64 numberOf(const QWidget* widget);
    // Null when there is no such widget any more, or there never was.
    QWidget* widgetOf(qint64 number) const;
    // Whether a widget at this address has got a number; it may be in its destructor.
    bool isKnown(const QObject* object) const;

private:
    References() = default;
    void forgetTheDead();

    struct Entry
    {
        QPointer<QWidget> widget; // null once it has died; another widget may have its address
        qint64 number = 0;
    };
    QHash<const QWidget*, Entry> entries;
    QHash<qint64, const QWidget*> widgets;
    qint64 last = 0;
    int cleanupThreshold = 1024; // with that many entries, those of dead widgets are removed
};

} // namespace locate
