#pragma once

#include <QApplication>
#include <QtCore/QEvent>

// An application that knows in the middle of which events it is.
class WatchfulApplication : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override
    {
        const QEvent::Type before = outer;
        outer = inner;
        inner = event->type();
        const bool wasSpontaneous = spontaneous;
        spontaneous = event->spontaneous();
        const bool destroys = inner == QEvent::DeferredDelete;
        destructions += destroys ? 1 : 0;
        ++depth;
        const bool result = QApplication::notify(receiver, event);
        if (--depth < submenuDepth)
            submenuDepth = 0;
        destructions -= destroys ? 1 : 0;
        spontaneous = wasSpontaneous;
        inner = outer;
        outer = before;
        return result;
    }

    // Whether the event that is being delivered comes straight from an event loop or from the agent's reading of its socket.
    // Otherwise Qt delivers it in the middle of another one: so do item views with the keys of an editor that they close, be
    // it from their own destructor.
    static bool isFirstHand() { return outer == QEvent::None || outer == QEvent::SockAct || outer == QEvent::Timer; }
    // Whether input that came so is being delivered, and nothing else, such as the loss of the focus, by which Qt sends the
    // signals of input, too.
    static bool isFirstHandInput();
    // Whether the event that is being delivered comes from the windowing system. Of what Qt hands on to the parents of a widget
    // that has ignored it, the event itself no longer tells.
    static bool isSpontaneous() { return spontaneous; }
    // Whether a deferred deletion is under way.
    static bool isDestroying() { return destructions > 0; }
    // To be called when a menu is about to show one of its submenus: it does so until the event ends that had it do so.
    static void beginSubmenu() { submenuDepth = depth; }
    static bool isShowingSubmenu() { return submenuDepth > 0; }

private:
    static QEvent::Type inner;
    static QEvent::Type outer;
    static bool spontaneous;
    static int destructions;
    static int depth;
    static int submenuDepth;
};
