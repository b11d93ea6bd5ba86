#include "proxy/mousecommand.h"

#include "compat/variant.h"
#include "proxy/sterror.h"
#include "proxy/words.h"

#include <cstddef>

namespace proxy {

namespace {

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
Value requiredValue(const Word<Value> (&words)[size], const QString& text, const char* kind)
{
    if (const Value* value = valueOf(words, text))
        return *value;
    raiseError(
        QLatin1Char('"') + text + QLatin1String("\"-") + QLatin1String(kind) + QLatin1String(" is not implemented"));
}

float parsedShare(const QString& text, int parameter)
{
    bool ok = false;
    const float value = text.isEmpty() ? 0.5F : compat::toFloat(text, &ok);
    if (!ok && !text.isEmpty())
        raiseError(
            QString::fromLatin1("The %1. parameter \"").arg(parameter) + text + QLatin1String("\" is not a float"));
    return value;
}

void checkRange(float share)
{
    if (!(share >= 0.0F && share <= 1.0F)) // not a number is out of range too
        raiseError("Only a Position between 0.0 and 1.0 is allowed");
}

} // namespace

MouseCommandType mouseCommandType(const QString& word)
{
    return requiredValue(types, word, "Type");
}

Qt::MouseButton mouseButton(const QString& word)
{
    return requiredValue(buttons, word, "Button");
}

Qt::KeyboardModifiers keyboardModifier(const QString& word)
{
    return requiredValue(modifiers, word, "Modifier");
}

QPoint pointAtShares(const QRect& rect, const QString& x, const QString& y, int placeOfX)
{
    if (x.isEmpty() && y.isEmpty())
        return rect.center();
    const float xShare = parsedShare(x, placeOfX);
    const float yShare = parsedShare(y, placeOfX + 1);
    checkRange(xShare);
    checkRange(yShare);
    // Single precision, truncated; 1.0 is one pixel beyond the edge.
    return QPoint(rect.left() + static_cast<int>(xShare * static_cast<float>(rect.width())),
        rect.top() + static_cast<int>(yShare * static_cast<float>(rect.height())));
}

int wheelSteps(const QString& text, int place)
{
    bool ok = false;
    const int steps = text.isEmpty() ? 0 : compat::toInt(text, &ok);
    if (!ok && !text.isEmpty())
        raiseError("The %d. parameter \"%s\" is not an integer", place, text);
    const int maximumSteps = 1000; // a request must end in reasonable time
    if (steps < -maximumSteps || steps > maximumSteps)
        raiseError("At most %d steps of the wheel are allowed", maximumSteps);
    return steps;
}

} // namespace proxy
