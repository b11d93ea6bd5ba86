#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>

#include <vector>

class QWidget;

namespace compat {

// Remembers for which windows a wait has failed, and in which circumstances. That is forgotten as soon as the window is
// shown, hidden, placed or activated.
class FailedWaits : public QObject
{
public:
    static FailedWaits& all();

    // Remembers that a wait for the window has failed, at a point where `front` is in front: another window, or null.
    void add(QWidget* window, QWidget* front);
    // Whether a wait for the window has failed while the same window was in front and the same one active.
    bool contain(const QWidget* window, const QWidget* front) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Circumstances
    {
        QPointer<QWidget> window;
        QPointer<QWidget> front;
        QPointer<QWidget> active;
    };
    void forget(const QObject* window);

    std::vector<Circumstances> failures;
};

} // namespace compat
