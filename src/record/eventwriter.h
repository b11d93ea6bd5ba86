#pragma once

#include <QtCore/QPoint>

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

} // namespace record
