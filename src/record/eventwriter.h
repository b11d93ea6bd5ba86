#pragma once

#include <QtCore/QPoint>
#include <QtCore/QString>

class QInputMethodEvent;
class QKeyEvent;
class QMouseEvent;
class QWheelEvent;
class QFocusEvent;
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
    bool isInList; // of a combo box
};

Target targetOf(QWidget* receiver, const QPoint& position);

// Each adds the fields of an event to its object. `withPasswords`: also the keys for a field that hides its text.
void addWidget(locate::JsonObject& object, const QWidget* widget);
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

} // namespace record
