#include "compat/widgets.h"

#include "compat/systeminput.h"

#include <QAbstractItemView>
#include <QDropEvent>
#include <QStyle>
#include <QStyleOption>
#include <QtGui/QCursor>
#include <QtGui/QIcon>
#include <QtGui/QMouseEvent>
#include <QtGui/QPixmap>
#include <QtGui/QWheelEvent>

#if QT_VERSION >= 0x060000
#include <QtGui/QAction>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>
#elif QT_VERSION >= 0x050000
#include <QtGui/QScreen>
#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDesktopWidget>
#else
#include <QtGui/QAction>
#include <QtGui/QApplication>
#include <QtGui/QDesktopWidget>
#endif

#include <algorithm>

namespace compat {

#if QT_VERSION >= 0x050000

namespace {

// The widget whose native window gets the mouse events for the target.
const QWidget* nativeHolder(const QWidget* target)
{
    const QWidget* holder = target->internalWinId() ? target : target->nativeParentWidget();
    return holder ? holder : target->window();
}

QPoint nearestPoint(const QRect& rect, const QPoint& point)
{
    return QPoint(qBound(rect.left(), point.x(), rect.right()), qBound(rect.top(), point.y(), rect.bottom()));
}

int distance(const QScreen* screen, const QPoint& point)
{
    return (point - nearestPoint(screen->geometry(), point)).manhattanLength();
}

// The screen at a point; where there is none, the nearest one. Null when the last screen has been unplugged.
QScreen* screenNear(const QPoint& point)
{
    if (QScreen* screen = QGuiApplication::screenAt(point))
        return screen;
    const QList<QScreen*> screens = QGuiApplication::screens();
    const auto nearest = std::min_element(screens.begin(), screens.end(),
        [&point](const QScreen* a, const QScreen* b) { return distance(a, point) < distance(b, point); });
    return nearest == screens.end() ? nullptr : *nearest;
}

} // namespace

#endif

QMouseEvent* newMouseEvent(QEvent::Type type, const QWidget* target, const QPoint& globalPosition,
    Qt::MouseButton button, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers)
{
    const QPoint position = target->mapFromGlobal(globalPosition);
#if QT_VERSION >= 0x050000
    const QPoint windowPosition = nativeHolder(target)->mapFromGlobal(globalPosition);
    return new OwnInput<QMouseEvent>(type, position, windowPosition, globalPosition, button, buttons, modifiers);
#else
    return new OwnInput<QMouseEvent>(type, position, globalPosition, button, buttons, modifiers);
#endif
}

#if QT_VERSION >= 0x060000

QPoint positionOf(const QMouseEvent& event)
{
    return event.position().toPoint();
}

QPoint globalPositionOf(const QMouseEvent& event)
{
    return event.globalPosition().toPoint();
}

QPoint positionOf(const QDropEvent& event)
{
    return event.position().toPoint();
}

QList<QWidget*> widgetsOf(const QAction& action)
{
    QList<QWidget*> widgets;
    const QList<QObject*> objects = action.associatedObjects();
    for (QObject* object : objects) {
        if (object->isWidgetType())
            widgets.append(static_cast<QWidget*>(object));
    }
    return widgets;
}

#else

QPoint positionOf(const QMouseEvent& event)
{
    return event.pos();
}

QPoint globalPositionOf(const QMouseEvent& event)
{
    return event.globalPos();
}

QPoint positionOf(const QDropEvent& event)
{
    return event.pos();
}

QList<QWidget*> widgetsOf(const QAction& action)
{
    return action.associatedWidgets();
}

#endif

#if QT_VERSION >= 0x050e00

QPoint positionOf(const QWheelEvent& event)
{
    return event.position().toPoint();
}

QPoint globalPositionOf(const QWheelEvent& event)
{
    return event.globalPosition().toPoint();
}

#else

QPoint positionOf(const QWheelEvent& event)
{
    return event.pos();
}

QPoint globalPositionOf(const QWheelEvent& event)
{
    return event.globalPos();
}

#endif

#if QT_VERSION >= 0x050000

QPoint angleOf(const QWheelEvent& event)
{
    return event.angleDelta();
}

#else

QPoint angleOf(const QWheelEvent& event)
{
    return event.orientation() == Qt::Horizontal ? QPoint(event.delta(), 0) : QPoint(0, event.delta());
}

#endif

void setCursorPosition(const QPoint& globalPosition)
{
#if QT_VERSION >= 0x050000
    // Qt may read a point just beyond the edge of a screen in the scale of another, which can put it into the middle of
    // a window. The windowing system would take it to the edge.
    if (QScreen* screen = screenNear(globalPosition))
        QCursor::setPos(screen, nearestPoint(screen->geometry(), globalPosition));
#else
    QCursor::setPos(globalPosition);
#endif
}

QPixmap pixmapOf(const QIcon& icon, const QSize& size)
{
#if QT_VERSION >= 0x060000
    return icon.pixmap(size, 1.0);
#elif QT_VERSION >= 0x050000
    return icon.pixmap(
        QCoreApplication::testAttribute(Qt::AA_UseHighDpiPixmaps) ? size / qApp->devicePixelRatio() : size);
#else
    return icon.pixmap(size);
#endif
}

QRect availableGeometry(const QWidget* widget)
{
#if QT_VERSION >= 0x060000
    // Not the screen of the window, which may be another one than that of its child.
    const QRect place
        = widget->isWindow() ? widget->frameGeometry() : QRect(widget->mapToGlobal(QPoint(0, 0)), widget->size());
    const QScreen* holder = QGuiApplication::primaryScreen();
    int largest = 0;
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) {
        const QRect shared = screen->geometry() & place;
        if (shared.width() * shared.height() > largest) {
            largest = shared.width() * shared.height();
            holder = screen;
        }
    }
    return holder ? holder->availableGeometry() : place;
#else
    return QApplication::desktop()->availableGeometry(widget);
#endif
}

QString keyCodeText(int key)
{
#if QT_VERSION >= 0x050000
    return key == Qt::Key_Space ? QString(QLatin1Char(' ')) : QString();
#else
    Q_UNUSED(key)
    return QString();
#endif
}

const char* socketErrorSignal()
{
#if QT_VERSION >= 0x060000
    return SIGNAL(errorOccurred(QAbstractSocket::SocketError));
#else
    return SIGNAL(error(QAbstractSocket::SocketError));
#endif
}

#if QT_VERSION >= 0x050000
using ItemOption = QStyleOptionViewItem;
#else
using ItemOption = QStyleOptionViewItemV4;
#endif

QRect checkBoxOfItem(const QAbstractItemView& view, const QRect& item)
{
    ItemOption option;
    option.initFrom(&view);
    option.rect = item;
    option.features |= ItemOption::HasCheckIndicator;
    return view.style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, &view);
}

} // namespace compat
