#pragma once

#include <QtCore/QObject>

namespace proxy {

// Sees, as long as it lives, whether keys go to a widget that hides what is typed.
class HiddenKeys : public QObject
{
public:
    // Needs an application object.
    HiddenKeys();

    bool areThere() const { return isSeen; }

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    bool isSeen = false;
};

} // namespace proxy
