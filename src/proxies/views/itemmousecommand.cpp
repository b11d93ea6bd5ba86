#include "proxies/views/itemmousecommand.h"

#include "proxy/sterror.h"
#include "proxy/textparts.h"
#include "proxy/words.h"

#include <QtCore/QStringList>

namespace {

const Word<MouseCommandType> types[] = {
    {"MousePress", MouseCommandType::Press},
    {"MouseRelease", MouseCommandType::Release},
    {"MouseClick", MouseCommandType::Click},
    {"MouseDoubleClick", MouseCommandType::DoubleClick},
};

const Word<Qt::MouseButton> buttons[] = {
    {"LeftButton", Qt::LeftButton},
    {"RightButton", Qt::RightButton},
};

const Word<Qt::KeyboardModifier> modifiers[] = {
    {"ShiftModifier", Qt::ShiftModifier},
    {"ControlModifier", Qt::ControlModifier},
    {"AltModifier", Qt::AltModifier},
    {"", Qt::NoModifier},
};

template <class Value, std::size_t size>
Value requiredValue(const Word<Value> (&words)[size], const QString& text, const char* errorMessage)
{
    if (const Value* value = valueOf(words, text))
        return *value;
    raiseError(errorMessage);
}

} // namespace

ItemMouseCommand itemMouseCommand(const QString& text)
{
    const int partCount = 5;
    const QStringList parts = firstParts(text, QLatin1Char(':'), partCount + 1);
    if (parts.size() != partCount)
        raiseError("Invalid string value");
    const Qt::MouseButton button = requiredValue(buttons, parts.at(1), "Mouse button not supported");
    const Qt::KeyboardModifier modifier = requiredValue(modifiers, parts.at(4), "Mouse modifier not supported");
    return {requiredValue(types, parts.at(0), "Invalid mouse command"), button, modifier};
}
