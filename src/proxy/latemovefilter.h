#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>

class QWidget;

// An event filter for a widget on which a mouse button is held by events alone. The windowing system reports the
// cursor's moves late and without buttons: such a move would end the drag for widgets that look at the buttons, as tab
// bars do. The filter stops the system's moves without buttons, and nothing else.
class LateMoveFilter : public QObject
{
public:
    // Protects this widget from now on, until stop(), and no other one.
    void protect(QWidget* pressed);
    void stop();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPointer<QWidget> widget;
};
