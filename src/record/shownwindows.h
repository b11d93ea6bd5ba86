#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QSet>

class QObject;
class QWidget;

namespace record {

// The windows that are shown while a recording goes on, and which of them have been described. A description takes long in a
// window of many widgets, so each is described once, and again only when a widget in it has come or gone.
class ShownWindows
{
public:
    // Begins with those that are shown now, and describes them, so that the first input does not have to wait for that.
    void start();
    void clear();
    // The descriptions that start() has made, separated by commas; once.
    QByteArray takeFirst();

    void add(const QWidget* window);
    // Returns the reference number, which a window that is being deleted has no more; 0 where it was not shown.
    qint64 remove(const QObject* window);

    bool isDescribed(const QWidget* window) const;
    // The description of a window; nothing where it is too large.
    QByteArray describe(QWidget* window);
    // The next input describes the window anew.
    void forgetDescription(const QWidget* window);
    void forgetDescriptions() { described.clear(); }

private:
    QHash<const QObject*, qint64> numbers;
    QSet<qint64> described;
    QByteArray first;
};

} // namespace record
