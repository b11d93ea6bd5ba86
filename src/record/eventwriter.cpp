#include "record/eventwriter.h"

#include "compat/widgets.h"
#include "compat/widgettexts.h"
#include "locate/description.h"
#include "locate/json.h"
#include "locate/references.h"
#include "locate/values.h"

#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QKeySequence>
#include <QLineEdit>
#include <QMouseEvent>
#include <QWheelEvent>

#include <cstddef>

namespace record {

namespace {

struct FlagRow
{
    int flag;
    const char* word;
};

const FlagRow buttonRows[] = {{Qt::LeftButton, "left"}, {Qt::RightButton, "right"}, {Qt::MiddleButton, "middle"}};

const FlagRow modifierRows[] = {
    {Qt::ControlModifier, "Ctrl"}, {Qt::ShiftModifier, "Shift"}, {Qt::AltModifier, "Alt"}, {Qt::MetaModifier, "Meta"}};

const FlagRow focusRows[] = {
    {Qt::MouseFocusReason, "mouse"},
    {Qt::TabFocusReason, "tab"},
    {Qt::BacktabFocusReason, "backtab"},
    {Qt::ActiveWindowFocusReason, "window"},
    {Qt::PopupFocusReason, "popup"},
    {Qt::ShortcutFocusReason, "shortcut"},
    {Qt::MenuBarFocusReason, "menu bar"},
};

template <std::size_t size>
void addFlags(locate::JsonObject& object, const char* key, const FlagRow (&rows)[size], int flags)
{
    QByteArray words;
    for (const FlagRow& row : rows) {
        if (flags & row.flag)
            words.append(words.isEmpty() ? "\"" : ",\"").append(row.word).append('"');
    }
    if (!words.isEmpty())
        object.field(key).append('[').append(words).append(']');
}

template <std::size_t size>
const char* wordOf(const FlagRow (&rows)[size], int value)
{
    for (const FlagRow& row : rows) {
        if (value == row.flag)
            return row.word;
    }
    return "other";
}

void addPair(locate::JsonObject& object, const char* key, int first, int second)
{
    QByteArray& json = object.field(key);
    json += '[';
    locate::appendNumber(json, first);
    json += ',';
    locate::appendNumber(json, second);
    json += ']';
}

// Adds the value that the field has before the event.
void addFieldValue(locate::JsonObject& object, QWidget* receiver)
{
    addValue(object, targetOf(receiver, QPoint()).widget, QString());
}

bool isPrintable(const QString& text)
{
    return !text.isEmpty() && (text.at(0).isPrint() || text.at(0).isHighSurrogate());
}

// The target for a position in a part of an outer widget.
Target targetIn(QWidget* outer, const QWidget* receiver, const QPoint& position)
{
    return {outer, receiver->mapTo(outer, position), false};
}

// The combo box whose open list the widget is; null for others.
QComboBox* boxOfList(QWidget* widget)
{
    QWidget* const container = qobject_cast<QAbstractItemView*>(widget) ? widget->parentWidget() : widget;
    const bool isList = container && container->inherits("QComboBoxPrivateContainer");
    return isList ? qobject_cast<QComboBox*>(container->parentWidget()) : nullptr;
}

} // namespace

Target targetOf(QWidget* receiver, const QPoint& position)
{
    QWidget* parent = receiver->parentWidget();
    const auto* area = qobject_cast<QAbstractScrollArea*>(parent);
    const bool isViewport = area && area->viewport() == receiver;
    QWidget* box = boxOfList(isViewport ? parent : receiver);
    if (!box && receiver->window()->inherits("QCalendarPopup"))
        box = qobject_cast<QAbstractSpinBox*>(receiver->window()->parentWidget()); // a date edit
    if (box)
        return {box, position, true};
    if (isViewport)
        return targetIn(parent, receiver, position);
    const bool isInBox = qobject_cast<QLineEdit*>(receiver) && parent
        && (qobject_cast<QAbstractSpinBox*>(parent) || qobject_cast<QComboBox*>(parent));
    return isInBox ? targetIn(parent, receiver, position) : Target{receiver, position, false};
}

QWidget* askedFor(QWidget* receiver, const Target& target)
{
    return receiver->parentWidget() && target.widget != receiver ? receiver->parentWidget() : receiver;
}

void addWidget(locate::JsonObject& object, const QWidget* widget)
{
    object.add("ref", locate::References::all().numberOf(widget));
    object.add("window", locate::References::all().numberOf(widget->window()));
}

void addPlace(locate::JsonObject& object, const Target& target)
{
    addPair(object, "at", target.position.x(), target.position.y());
    addPair(object, "size", target.widget->width(), target.widget->height());
    if (target.isInList)
        object.field("list") += "true";
}

void addMouse(locate::JsonObject& object, const Target& target, const QMouseEvent& event)
{
    addPlace(object, target);
    object.add("button", wordOf(buttonRows, event.button()));
    addFlags(object, "buttons", buttonRows, event.buttons());
    addFlags(object, "modifiers", modifierRows, event.modifiers());
}

void addWheel(locate::JsonObject& object, const Target& target, const QWheelEvent& event)
{
    addPlace(object, target);
    const QPoint angle = compat::angleOf(event);
    addPair(object, "angle", angle.x(), angle.y());
    addFlags(object, "buttons", buttonRows, event.buttons());
    addFlags(object, "modifiers", modifierRows, event.modifiers());
}

void addKey(locate::JsonObject& object, QWidget* receiver, const QKeyEvent& event, bool withPasswords)
{
    addFlags(object, "modifiers", modifierRows, event.modifiers());
    if (event.isAutoRepeat())
        object.field("repeated") += "true";
    if (!withPasswords && compat::hidesText(receiver) && isPrintable(event.text())) {
        object.field("hidden") += "true";
        return;
    }
    const int modifiers = event.modifiers()
        & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier | Qt::KeypadModifier);
    const int key = event.key();
    if (key && key != Qt::Key_unknown)
        object.addUnlessEmpty("key", QKeySequence(key | modifiers).toString(QKeySequence::PortableText));
    object.addUnlessEmpty("text", event.text());
    addFieldValue(object, receiver);
}

void addText(locate::JsonObject& object, QWidget* receiver, const QInputMethodEvent& event, bool withPasswords)
{
    if (!withPasswords && compat::hidesText(receiver)) {
        object.field("hidden") += "true";
        return;
    }
    object.addUnlessEmpty("text", event.commitString());
    addFieldValue(object, receiver);
}

void addFacts(locate::JsonObject& object, QWidget* widget)
{
    locate::JsonObject facts(object.field("widget"));
    locate::addOwnFields(facts, widget);
    addValue(facts, widget, QString());
}

QString choiceIn(const QWidget* widget)
{
    const auto* box = qobject_cast<const QComboBox*>(widget);
    return box && !box->lineEdit() ? box->currentText() : QString();
}

void addValue(locate::JsonObject& object, QWidget* widget, const QString& choice)
{
    const QWidget* holder = widget;
    if (const auto* box = qobject_cast<const QComboBox*>(widget)) {
        holder = box->lineEdit();
        if (!holder)
            object.addUnlessEmpty("value", choice);
    }
    if (const locate::ValueWriter add = holder ? locate::valueWriterFor(holder) : nullptr)
        add(object, holder);
}

void addHeld(locate::JsonObject& object, QWidget* widget, const QString& choice)
{
    object.add("ref", locate::References::all().numberOf(widget));
    addValue(object, widget, choice);
}

void addFocus(locate::JsonObject& object, const QFocusEvent& event)
{
    object.add("reason", wordOf(focusRows, event.reason()));
}

} // namespace record
