#include "agent/windowcommands.h"

#include "agent/request.h"
#include "agent/widgetaccess.h"
#include "compat/stacking.h"
#include "compat/variant.h"

#include <QPointer>
#include <QWidget>

namespace agent {

namespace {

// Windowing systems have no larger windows. Qt allocates memory for every pixel all the same, and when there is not enough
// of it, the application crashes.
const int maximumSide = 16384;

const char typeErrorReply[] = "8,Type error: move or resize accepts integer";

// The range of positions that Qt can handle: further out, the edges of a window overflow an int.
int withinQtRange(int coordinate)
{
    return qBound(-QWIDGETSIZE_MAX, coordinate, QWIDGETSIZE_MAX);
}

QByteArray titleReply(const QWidget* window)
{
    return "0," + window->windowTitle().toLatin1();
}

// Brings the window to the front and has `change` applied to the numbers in sections 2 and 3.
template <class Change>
QByteArray changeWindow(const Request& request, Change change)
{
    const Access access = frontWindow(request.section(1));
    if (!access.widget)
        return access.refusal;
    bool firstOk = false;
    bool secondOk = false;
    const int first = compat::toInt(request.text(2), &firstOk);
    const int second = compat::toInt(request.text(3), &secondOk);
    if (!firstOk || !secondOk)
        return typeErrorReply;
    // Showing, moving and resizing run the window's event handlers, and one of them may delete it.
    const QPointer<QWidget> window(access.widget);
    const QByteArray reply = titleReply(window);
    if (window->isMinimized())
        window->showNormal();
    if (window)
        compat::activateWindow(window);
    if (window)
        window->raise();
    if (window)
        change(window, first, second);
    return window ? titleReply(window) : reply;
}

} // namespace

QByteArray checkWindow(const Request& request, STApplicationProxy&)
{
    const Access access = frontWindow(request.section(1));
    return access.widget ? titleReply(access.widget) : access.refusal;
}

QByteArray moveWindow(const Request& request, STApplicationProxy&)
{
    return changeWindow(
        request, [](QWidget* window, int x, int y) { window->move(withinQtRange(x), withinQtRange(y)); });
}

QByteArray resizeWindow(const Request& request, STApplicationProxy&)
{
    return changeWindow(request, [](QWidget* window, int width, int height) {
        window->resize(qMin(width, maximumSide), qMin(height, maximumSide));
    });
}

} // namespace agent
