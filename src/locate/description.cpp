#include "locate/description.h"

#include "compat/embedding.h"
#include "locate/json.h"
#include "locate/references.h"
#include "locate/widgettexts.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextEdit>
#include <QToolButton>

namespace locate {

namespace {

bool isPartlyChecked(const QWidget* widget)
{
    const auto* box = qobject_cast<const QCheckBox*>(widget);
    return box && box->checkState() == Qt::PartiallyChecked;
}

bool isChecked(const QWidget* widget)
{
    if (isPartlyChecked(widget))
        return false;
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget))
        return button->isCheckable() && button->isChecked();
    const auto* box = qobject_cast<const QGroupBox*>(widget);
    return box && box->isCheckable() && box->isChecked();
}

bool isReadOnly(const QWidget* widget)
{
    if (const auto* line = qobject_cast<const QLineEdit*>(widget))
        return line->isReadOnly();
    if (const auto* text = qobject_cast<const QTextEdit*>(widget))
        return text->isReadOnly();
    if (const auto* text = qobject_cast<const QPlainTextEdit*>(widget))
        return text->isReadOnly();
    const auto* box = qobject_cast<const QAbstractSpinBox*>(widget);
    return box && box->isReadOnly();
}

// Whether the list or the menu that belongs to the widget is open.
bool isExpanded(const QWidget* widget)
{
    const auto* toolButton = qobject_cast<const QToolButton*>(widget);
    const auto* pushButton = qobject_cast<const QPushButton*>(widget);
    const bool isBox = qobject_cast<const QComboBox*>(widget);
    const QWidget* popup = isBox || toolButton || pushButton ? compat::popupInFrontOf(widget) : nullptr;
    if (!popup)
        return false;
    if (toolButton && !toolButton->isDown())
        return false;
    const QWidget* menu = toolButton ? toolButton->menu() : pushButton ? pushButton->menu() : nullptr;
    return menu == popup || (!pushButton && popup->parentWidget() == widget);
}

bool isDefault(const QWidget* widget)
{
    const auto* button = qobject_cast<const QPushButton*>(widget);
    return button && button->isDefault();
}

struct StateRow
{
    const char* name;
    bool (*holds)(const QWidget* widget);
};

const StateRow stateRows[] = {
    {"disabled", [](const QWidget* widget) { return !widget->isEnabled(); }},
    {"checked", isChecked},
    {"partly checked", isPartlyChecked},
    {"focused", compat::hasKeyboardFocus},
    {"expanded", isExpanded},
    {"readonly", isReadOnly},
    {"hidden", [](const QWidget* widget) { return !widget->isVisible(); }},
    {"default", isDefault},
    {"hovered", [](const QWidget* widget) { return widget->underMouse(); }},
};

void addStates(JsonObject& object, const QWidget* widget)
{
    QByteArray states;
    for (const StateRow& row : stateRows) {
        if (row.holds(widget))
            states.append(states.isEmpty() ? "\"" : ",\"").append(row.name).append('"');
    }
    if (!states.isEmpty())
        object.field("states").append('[').append(states).append(']');
}

void addClass(JsonObject& object, const QWidget* widget, const WidgetKind& kind)
{
    object.add("class", widget->metaObject()->className());
    object.addUnlessEmpty("name", widget->objectName());
    object.add("role", roleOf(widget, kind));
    if (kind.isOneText)
        object.addUnlessEmpty("text", firstShownText(widget, kind.readTexts));
}

void addOtherTexts(JsonObject& object, const QWidget* widget)
{
    object.addUnlessEmpty("title", firstShownText(widget, readTitle));
    object.addUnlessEmpty("placeholder", firstShownText(widget, readPlaceholder));
    object.addUnlessEmpty("tip", firstShownText(widget, readToolTip));
    object.addUnlessEmpty("action", firstShownText(widget, readAction));
}

} // namespace

void addOwnFields(JsonObject& object, const QWidget* widget)
{
    const WidgetKinds kinds;
    addClass(object, widget, kinds.of(widget));
    addOtherTexts(object, widget);
    addStates(object, widget);
}

WidgetDescriber::WidgetDescriber(const QWidget* describedWindow)
    : window(describedWindow)
    , origin(compat::mapToGlobal(describedWindow, QPoint(0, 0)))
    , labels(describedWindow, kinds)
{
}

void WidgetDescriber::addFields(JsonObject& object, const QWidget* widget) const
{
    object.add("ref", References::all().numberOf(widget));
    addClass(object, widget, kinds.of(widget));
    object.addUnlessEmpty("label", labels.of(widget));
    addOtherTexts(object, widget);
    addStates(object, widget);
    addRect(object, widget);
}

void WidgetDescriber::append(QByteArray& json, const QWidget* widget) const
{
    JsonObject object(json);
    addFields(object, widget);
}

void WidgetDescriber::addRect(JsonObject& object, const QWidget* widget) const
{
    const QPoint corner = origin + widget->mapTo(const_cast<QWidget*>(window), QPoint(0, 0));
    QByteArray& json = object.field("rect");
    const int numbers[] = {corner.x(), corner.y(), widget->width(), widget->height()};
    char separator = '[';
    for (const int number : numbers) {
        json += separator;
        appendNumber(json, number);
        separator = ',';
    }
    json += ']';
}

} // namespace locate
