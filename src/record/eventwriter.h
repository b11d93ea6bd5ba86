#pragma once

#include <QtCore/QPoint>
#include <QtCore/QString>

class QFocusEvent;
class QInputMethodEvent;
class QKeyEvent;
class QMouseEvent;
class QWheelEvent;
class QWidget;

namespace locate {
class JsonObject;
}

namespace record {

// The widget that a test would name for an event, and the place of the event in it: the whole view, field or box instead of a
// part of it that Qt has made.
struct Target
{
    QWidget* widget;
    QPoint position;
    bool isInList; // of a combo box, or in the calendar of a date edit
};

Target targetOf(QWidget* receiver, const QPoint& position);
// The widget that knows the item at a place of the receiver: an item view is asked itself, with places in its viewport.
QWidget* askedFor(QWidget* receiver, const Target& target);

// Each adds the fields of an event to its object. `withPasswords`: also the keys for a field that hides its text.
void addWidget(locate::JsonObject& object, const QWidget* widget);
void addPlace(locate::JsonObject& object, const Target& target);
void addMouse(locate::JsonObject& object, const Target& target, const QMouseEvent& event);
void addWheel(locate::JsonObject& object, const Target& target, const QWheelEvent& event);
void addKey(locate::JsonObject& object, QWidget* receiver, const QKeyEvent& event, bool withPasswords);
void addText(locate::JsonObject& object, QWidget* receiver, const QInputMethodEvent& event, bool withPasswords);
void addFocus(locate::JsonObject& object, const QFocusEvent& event);
// Adds "widget", what the widget tells of itself now.
void addFacts(locate::JsonObject& object, QWidget* widget);

// The text that is chosen in a combo box; empty for other widgets. Code of the application runs.
QString choiceIn(const QWidget* widget);
// Adds "value", what the widget holds; `choice` is that of choiceIn().
void addValue(locate::JsonObject& object, QWidget* widget, const QString& choice);
// Adds which widget it is, and its value.
void addHeld(locate::JsonObject& object, QWidget* widget, const QString& choice);

} // namespace record
