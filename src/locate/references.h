#pragma once

#include <QPointer>
#include <QWidget>
#include <QtCore/QHash>

namespace locate {

// Numbers by which tests name widgets that have no names. A widget keeps its number as long as it lives, and no other one
// gets it. Nothing of that is on the widgets themselves, whose properties are the application's.
class References
{
public:
    // Those of this process, which outlive the agent: numbers that a test has of one connection stay true in the next.
    static References& all();

    // The widget's number; it gets one if it has none yet.
    qint64 numberOf(const QWidget* widget);
    // Null when there is no such widget any more, or there never was.
    QWidget* widgetOf(qint64 number) const;

private:
    References() = default;
    void forgetTheDead();

    struct Entry
    {
        QPointer<QWidget> widget; // null although there is a widget in its place: another one
        qint64 number = 0;
    };
    QHash<const QWidget*, Entry> entries;
    QHash<qint64, const QWidget*> widgets;
    qint64 last = 0;
    int mostEntries = 1024; // when there are more, the dead are forgotten
};

} // namespace locate
