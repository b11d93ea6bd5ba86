#pragma once

#include "locate/kinds.h"
#include "locate/labels.h"

#include <QtCore/QByteArray>
#include <QtCore/QPoint>

namespace locate {

class JsonObject;

// Adds "class", "name", "role", "text", "title", "placeholder", "tip", "action" and "states", as far as they apply: what a
// widget tells of itself, without a look at others.
void addOwnFields(JsonObject& object, const QWidget* widget);

// Describes the widgets of one window as objects of JSON in ASCII. Only for one request: it reads labels and the
// window's place when it is constructed.
class WidgetDescriber
{
public:
    explicit WidgetDescriber(const QWidget* window);
    Q_DISABLE_COPY(WidgetDescriber)

    // Adds "ref", "class", "name", "role", "text", "label", "title", "placeholder", "tip", "action", "states" and
    // "rect", as far as they apply. The texts are as they are shown; the rectangle is x, y, width and height on the
    // screen. Gives the widget a reference number.
    void addFields(JsonObject& object, const QWidget* widget) const;
    // These fields as an object of their own.
    void append(QByteArray& json, const QWidget* widget) const;

private:
    void addRect(JsonObject& object, const QWidget* widget) const;

    const QWidget* const window;
    const QPoint origin; // asked for once: with Qt 4 each mapToGlobal() is a round trip to the X server
    WidgetKinds kinds;
    Labels labels;
};

} // namespace locate
