#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>

#include <vector>

class QWidget;

namespace compat {

// The windows that were waited for in vain, and how they stood when the time was over. That is forgotten as soon as the
// window is shown, hidden, placed or activated.
class VainWaits : public QObject
{
public:
    static VainWaits& all();

    // The window was waited for at a point where the windowing system has `front`: another window, or null.
    void add(QWidget* window, QWidget* front);
    // Whether it was, when the same window was there and the same one was active.
    bool contain(const QWidget* window, const QWidget* front) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Standing
    {
        QPointer<QWidget> window;
        QPointer<QWidget> front;
        QPointer<QWidget> active;
    };
    void forget(const QObject* window);

    std::vector<Standing> standings;
};

} // namespace compat
