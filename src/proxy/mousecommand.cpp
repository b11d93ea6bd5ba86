#include "proxy/mousecommand.h"

#include "proxy/sterror.h"

#include <cstddef>

namespace {

template <class Value>
struct Word
{
    const char* text;
    Value value;
};

const Word<MouseCommandType> types[] = {
    {"MousePress", MouseCommandType::Press},
    {"MouseRelease", MouseCommandType::Release},
    {"MouseClick", MouseCommandType::Click},
    {"MouseDoubleClick", MouseCommandType::DoubleClick},
    {"MouseMove", MouseCommandType::Move},
    {"", MouseCommandType::Move},
};

const Word<Qt::MouseButton> buttons[] = {
    {"LeftButton", Qt::LeftButton},
    {"RightButton", Qt::RightButton},
    {"MidButton", Qt::MiddleButton},
    {"NoButton", Qt::NoButton},
    {"", Qt::NoButton},
};

const Word<Qt::KeyboardModifier> modifiers[] = {
    {"ShiftModifier", Qt::ShiftModifier},
    {"ControlModifier", Qt::ControlModifier},
    {"AltModifier", Qt::AltModifier},
    {"NoModifier", Qt::NoModifier},
    {"", Qt::NoModifier},
};

template <class Value, std::size_t size>
Value valueOf(const Word<Value> (&words)[size], const QString& text, const char* kind)
{
    for (const Word<Value>& word : words) {
        if (text == QLatin1String(word.text))
            return word.value;
    }
    raiseError(
        QLatin1Char('"') + text + QLatin1String("\"-") + QLatin1String(kind) + QLatin1String(" is not implemented"));
}

float share(const QString& text, int parameter)
{
    bool ok = false;
    const float value = text.toFloat(&ok);
    if (!ok)
        raiseError(
            QString::fromLatin1("The %1. parameter \"").arg(parameter) + text + QLatin1String("\" is not a float"));
    if (!(value >= 0.0f && value <= 1.0f)) // not a number is out of range too
        raiseError("Only a Position between 0.0 and 1.0 is allowed");
    return value;
}

} // namespace

MouseCommandType mouseCommandType(const QString& word)
{
    return valueOf(types, word, "Type");
}

Qt::MouseButton mouseButton(const QString& word)
{
    return valueOf(buttons, word, "Button");
}

Qt::KeyboardModifiers keyboardModifier(const QString& word)
{
    return valueOf(modifiers, word, "Modifier");
}

QPoint pointAtShares(const QRect& rect, const QString& x, const QString& y)
{
    if (x.isEmpty() && y.isEmpty())
        return rect.center();
    const QString middle = QLatin1String("0.5");
    const float xShare = share(x.isEmpty() ? middle : x, 3);
    const float yShare = share(y.isEmpty() ? middle : y, 4);
    // Single precision, truncated; 1.0 is one pixel beyond the edge.
    return QPoint(rect.left() + static_cast<int>(xShare * static_cast<float>(rect.width())),
        rect.top() + static_cast<int>(yShare * static_cast<float>(rect.height())));
}
