#include "proxies/views/itemmousecommand.h"

#include "proxy/sterror.h"
#include "proxy/textparts.h"
#include "proxy/words.h"

#include <QtCore/QStringList>

#include <cstddef>

namespace views {

namespace {

const proxy::Word<proxy::MouseCommandType> types[] = {
    {"MousePress", proxy::MouseCommandType::Press},
    {"MouseRelease", proxy::MouseCommandType::Release},
    {"MouseClick", proxy::MouseCommandType::Click},
    {"MouseDoubleClick", proxy::MouseCommandType::DoubleClick},
};

const proxy::Word<Qt::MouseButton> buttons[] = {
    {"LeftButton", Qt::LeftButton},
    {"RightButton", Qt::RightButton},
};

const proxy::Word<Qt::KeyboardModifier> modifiers[] = {
    {"ShiftModifier", Qt::ShiftModifier},
    {"ControlModifier", Qt::ControlModifier},
    {"AltModifier", Qt::AltModifier},
    {"", Qt::NoModifier},
};

template <class Value, std::size_t size>
Value requiredValue(const proxy::Word<Value> (&words)[size], const QString& text, const char* errorMessage)
{
    if (const Value* value = proxy::valueOf(words, text))
        return *value;
    proxy::raiseError(errorMessage);
}

} // namespace

ItemMouseCommand itemMouseCommand(const QString& text)
{
    const int partCount = 5;
    const QStringList parts = proxy::firstParts(text, QLatin1Char(':'), partCount + 1);
    if (parts.size() != partCount)
        proxy::raiseError("Invalid string value");
    const Qt::MouseButton button = requiredValue(buttons, parts.at(1), "Mouse button not supported");
    const Qt::KeyboardModifier modifier = requiredValue(modifiers, parts.at(4), "Mouse modifier not supported");
    return {requiredValue(types, parts.at(0), "Invalid mouse command"), button, modifier};
}

} // namespace views
