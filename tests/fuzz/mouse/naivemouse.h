#pragma once

#include <QtCore/QList>
#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtCore/QString>

// The rules of mouse commands once more, as tables of what a widget is to see.
namespace naive {

// A mouse or context menu event; positions are global.
struct SeenEvent
{
    int type;
    int button;
    int buttons;
    int modifiers;
    QPoint position;

    bool operator==(const SeenEvent& other) const;
};

struct MouseOutcome
{
    QString error; // empty for none
    QList<SeenEvent> events;
};

// The effect of a mouse command on a widget whose rectangle on the screen that is.
MouseOutcome mouseOutcome(const QString& command, const QRect& rect);

// The errors of the mouse commands that only some widgets take: those of item views, and the fixed forms of buttons,
// which end in ":::", and of sliders, which end in nothing.
QString itemCommandError(const QString& command);
QString clickCommandError(const QString& command, const QString& ending);

} // namespace naive
