#pragma once

#include "proxy/keyboard.h"
#include "proxy/stinputcontrol.h"

#include <QtCore/QObject>
#include <QtCore/QPointer>

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

class QWidget;

namespace proxy {

// Has the application handle the key strokes of a request, one after the other, while one widget has the focus. Qt handles
// the events like real ones, so each reaches the widget that has the focus by then: in another window, once a key has
// opened one. Where a stroke runs the event loop of a dialog or menu, the strokes behind it are handled in there, as a
// user's would be.
class KeySequence : public QObject, public std::enable_shared_from_this<KeySequence>, private STInputControl
{
public:
    // Returns the events of the next stroke, none behind the last one.
    using NextStroke = std::function<KeyEvents()>;
    // Numbers of strokes, the first and the last one of a run.
    using Range = std::pair<int, int>;

    // The widget is in the window that has the focus, and prepared for input. Owned by a shared_ptr.
    KeySequence(QWidget* widget, const NextStroke& nextStroke);

    // Returns when the application has handled all strokes. Where one of them runs an event loop, calls the function
    // from there as soon as the others are handled, too.
    void run(const std::function<void()>& callWithin);

    // The widget died before the last key went down.
    bool hasLostWidget() const { return isLost; }
    // The strokes of which a key went to a widget that hides what is typed, counted from 0.
    const std::vector<Range>& hiddenStrokes() const { return hidden; }

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    void handleStrokes();
    void takeStroke();
    void finish();
    void send(const KeyEvent& event);
    void postContinuation();
    void continueWithin();
    void awaitDialog() const;
    QWidget* receiver() const;

    const QPointer<QWidget> widget;
    const QPointer<QWidget> window;
    const bool followsFocus; // into other windows
    const NextStroke next;
    std::function<void()> finishedWithin;
    KeyEvents stroke;
    KeyEvents following;
    std::size_t position = 0; // of the next event in the stroke
    int number = -1; // of the stroke
    bool isSending = false;
    bool isFinished = false;
    bool isLost = false;
    std::vector<Range> hidden;
};

} // namespace proxy
