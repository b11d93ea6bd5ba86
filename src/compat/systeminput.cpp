#include "compat/systeminput.h"

#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QKeySequence>
#include <QtGui/QWheelEvent>

#if QT_VERSION >= 0x050000
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

QT_BEGIN_NAMESPACE
// QtGui exports it for Qt's own tests, and declares it in none of its headers.
Q_GUI_EXPORT void qt_handleKeyEvent(QWindow* window, QEvent::Type type, int key, Qt::KeyboardModifiers modifiers,
    const QString& text, bool isAutoRepeat, ushort count);
QT_END_NAMESPACE
#else
#include <QtGui/QApplication>
#include <QtGui/QWidget>
#endif

QT_BEGIN_NAMESPACE
// A friend of QCoreApplication in the headers of all Qt versions. Events that it sends count as those of the system: the
// modifiers that they tell are the application's, and wheels are passed on to parents.
bool qt_sendSpontaneousEvent(QObject* receiver, QEvent* event)
{
    return QCoreApplication::sendSpontaneousEvent(receiver, event);
}
QT_END_NAMESPACE

namespace compat {

namespace {

#if QT_VERSION >= 0x050000

// The window that the windowing system would send the key to. A popup does not have its focus: Qt passes keys on to it.
QWindow* systemWindow(QWidget* window)
{
    QWindow* const focused = QGuiApplication::focusWindow();
    QWindow* const handle = window->windowHandle();
    if (!handle || (focused && QApplication::activePopupWidget()))
        return focused;
    const QWindow* ancestor = focused;
    while (ancestor && ancestor != handle)
        ancestor = ancestor->parent();
    return ancestor ? focused : handle; // one that is embedded in the window may have the focus
}

void deliver(QWidget* window, QEvent::Type type, int key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    if (QWindow* receiver = systemWindow(window))
        qt_handleKeyEvent(receiver, type, key, modifiers, text, false, 1);
}

#else

void deliver(QWidget* window, QEvent::Type type, int key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    QWidget* receiver = keyReceiver(window);
    const QWidget* modal = QApplication::activeModalWidget();
    const bool isBlocked = modal && receiver->window() != modal && !QApplication::activePopupWidget();
    if (!receiver->isEnabled() || isBlocked)
        return;
    QKeyEvent event(type, key, modifiers, text);
    qt_sendSpontaneousEvent(receiver, &event); // by QApplication::notify(), which looks for shortcuts
}

#endif

// As the windowing system's part of Qt does.
void requestContextMenu(QWidget* window)
{
    QWidget* receiver = keyReceiver(window);
    if (!receiver->isEnabled())
        return;
#if QT_VERSION >= 0x050000
    const QPoint position = receiver->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
#else
    const QPoint position = receiver->inputMethodQuery(Qt::ImMicroFocus).toRect().center();
#endif
    QContextMenuEvent event(QContextMenuEvent::Keyboard, position, receiver->mapToGlobal(position));
    qt_sendSpontaneousEvent(receiver, &event);
}

QSet<const QEvent*>& ownInputEvents()
{
    static auto* const events = new QSet<const QEvent*>; // never deleted: Qt may delete events as the process ends
    return *events;
}

} // namespace

bool isOwnInput(const QEvent* event)
{
    return ownInputEvents().contains(event);
}

void rememberOwnInput(const QEvent* event)
{
    ownInputEvents().insert(event);
}

void forgetOwnInput(const QEvent* event)
{
    ownInputEvents().remove(event);
}

QWidget* keyReceiver(QWidget* window)
{
    if (QWidget* grabber = QWidget::keyboardGrabber())
        return grabber;
    QWidget* popup = QApplication::activePopupWidget();
    QWidget* holder = popup ? popup : window;
    return holder->focusWidget() ? holder->focusWidget() : holder;
}

void sendKeyEvent(QWidget* window, QEvent::Type type, int key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    const QPointer<QWidget> guarded(window);
    if (type == QEvent::KeyPress && key == Qt::Key_Menu)
        requestContextMenu(window);
    if (guarded)
        deliver(window, type, key, modifiers, text);
}

void sendWheelEvent(QWidget* target, const QPoint& globalPosition, Qt::Orientation orientation, int angle,
    Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers)
{
    const QPoint position = target->mapFromGlobal(globalPosition);
#if QT_VERSION >= 0x050000
    const QPoint angles = orientation == Qt::Horizontal ? QPoint(angle, 0) : QPoint(0, angle);
    QWheelEvent event(position, globalPosition, QPoint(), angles, buttons, modifiers, Qt::NoScrollPhase, false);
#else
    QWheelEvent event(position, globalPosition, angle, buttons, modifiers, orientation);
#endif
    qt_sendSpontaneousEvent(target, &event);
}

int keyNamed(const QString& name)
{
    const QKeySequence sequence = QKeySequence::fromString(name, QKeySequence::PortableText);
    if (sequence.count() != 1)
        return 0;
#if QT_VERSION >= 0x060000
    const int key = sequence[0].key();
#else
    const int key = static_cast<int>(static_cast<uint>(sequence[0]) & ~static_cast<uint>(Qt::KeyboardModifierMask));
#endif
    return key == Qt::Key_unknown ? 0 : key;
}

} // namespace compat
