#pragma once

#include <QtCore/QObject>

namespace proxy {

// Whether the event is a key for a widget that hides what is typed.
bool isHiddenKey(const QObject* receiver, const QEvent* event);

// Sees, as long as it lives, whether there are such keys. One at a time.
class HiddenKeys : public QObject
{
public:
    // Needs an application object.
    HiddenKeys();

    // Whether the last one that was made has seen some.
    static bool wereSeen();

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;
};

} // namespace proxy
