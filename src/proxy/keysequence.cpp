#include "proxy/keysequence.h"

#include "compat/reachable.h"
#include "compat/systeminput.h"
#include "proxy/hiddenkeys.h"
#include "proxy/postedcall.h"

#include <QApplication>
#include <QWidget>

namespace proxy {

KeySequence::KeySequence(QWidget* focused, const NextStroke& nextStroke)
    : widget(focused)
    , window(focused->window())
    , followsFocus(focused->isActiveWindow())
    , next(nextStroke)
    , following(nextStroke())
{
    takeStroke();
}

void KeySequence::run(const std::function<void()>& callWithin)
{
    const std::shared_ptr<KeySequence> self = shared_from_this();
    finishedWithin = callWithin;
    QCoreApplication::instance()->installEventFilter(this);
    handleStrokes();
    finish();
}

void KeySequence::finish()
{
    isFinished = true;
    if (QCoreApplication* const application = QCoreApplication::instance())
        application->removeEventFilter(this);
}

// Runs again, for the strokes that are left, in each event loop that a key runs.
void KeySequence::handleStrokes()
{
    while (!stroke.empty()) {
        const bool isLast = following.empty();
        if (isLast)
            postContinuation();
        while (position < stroke.size()) {
            send(stroke[position++]);
            if (isFinished || isLost)
                return;
        }
        if (isLast)
            return;
        syncEvents();
        takeStroke();
    }
}

void KeySequence::takeStroke()
{
    stroke.swap(following);
    following = stroke.empty() ? KeyEvents() : next();
    position = 0;
    ++number;
}

void KeySequence::send(const KeyEvent& sent)
{
    const KeyEvent event = sent; // an event loop within it may go on to the next stroke
    if (event.type == QEvent::KeyPress)
        awaitDialog();
    if (event.type == QEvent::KeyPress && !widget) {
        isLost = true;
        return;
    }
    if (QWidget* const target = receiver()) {
        isSending = true;
        compat::sendKeyEvent(target, event.type, event.key, event.modifiers, event.text);
        isSending = false;
    }
}

// A dialog that has just opened gives its first field the focus when the windowing system has activated it.
void KeySequence::awaitDialog() const
{
    QWidget* const modal = QApplication::activeModalWidget();
    if (modal && modal != window)
        compat::waitUntilActive(modal);
}

QWidget* KeySequence::receiver() const
{
    QWidget* const active = QApplication::activeWindow();
    QWidget* const modal = QApplication::activeModalWidget();
    if (modal && modal != window)
        return modal; // the windowing system may not have given it the focus yet
    return active && (followsFocus || !window) ? active : window.data();
}

// Which loop handles the call tells whether the key is still on the stack. An application that only looks after its events
// while it works on a key gets no further key meanwhile, as it does not expect one; the last one is posted in any case.
bool KeySequence::eventFilter(QObject* object, QEvent* event)
{
    if (!isSending)
        return false;
    if (event->type() == QEvent::Show && object->isWidgetType() && static_cast<const QWidget*>(object)->isWindow())
        postContinuation();
    if (isHiddenKey(object, event)) {
        if (hidden.empty() || hidden.back().second < number - 1)
            hidden.emplace_back(number, number);
        hidden.back().second = number;
    }
    return false;
}

void KeySequence::postContinuation()
{
    const std::weak_ptr<KeySequence> sequence = shared_from_this();
    postCall([sequence] {
        if (const std::shared_ptr<KeySequence> living = sequence.lock())
            living->continueWithin();
    });
}

void KeySequence::continueWithin()
{
    if (isFinished || !isSending)
        return; // the key has been handled without an event loop
    isSending = false;
    handleStrokes();
    if (isFinished)
        return; // in yet another event loop
    finish();
    finishedWithin();
}

} // namespace proxy
