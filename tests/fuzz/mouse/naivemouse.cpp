#include "naivemouse.h"

#include "fuzzing.h"

#include <QtCore/QEvent>
#include <QtCore/QMap>
#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>

#include <cmath>
#include <limits>

namespace naive {

namespace {

using Words = QMap<QString, int>;

const Words& buttonWords()
{
    static const Words words = {{QStringLiteral("LeftButton"), Qt::LeftButton},
        {QStringLiteral("RightButton"), Qt::RightButton}, {QStringLiteral("MidButton"), Qt::MiddleButton},
        {QStringLiteral("NoButton"), Qt::NoButton}, {QString(), Qt::NoButton}};
    return words;
}

const Words& modifierWords()
{
    static const Words words = {{QStringLiteral("ShiftModifier"), int(Qt::ShiftModifier)},
        {QStringLiteral("ControlModifier"), int(Qt::ControlModifier)},
        {QStringLiteral("AltModifier"), int(Qt::AltModifier)}, {QStringLiteral("NoModifier"), 0}, {QString(), 0}};
    return words;
}

// The events that each type makes.
const QMap<QString, QList<int>>& typeEvents()
{
    static const QMap<QString, QList<int>> events = {{QStringLiteral("MousePress"), {QEvent::MouseButtonPress}},
        {QStringLiteral("MouseRelease"), {QEvent::MouseButtonRelease}},
        {QStringLiteral("MouseClick"), {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}},
        {QStringLiteral("MouseDoubleClick"),
            {QEvent::MouseButtonPress, QEvent::MouseButtonRelease, QEvent::MouseButtonDblClick}},
        {QStringLiteral("MouseMove"), {}}, {QString(), {}}};
    return events;
}

QString unknownWord(const QString& word, const char* kind)
{
    return QString::fromLatin1("\"") + word + QLatin1String("\"-") + QLatin1String(kind)
        + QLatin1String(" is not implemented");
}

QString positionError(const QStringList& shares)
{
    for (int i = 0; i < 2; ++i) {
        bool ok = false;
        const double value = shares.at(i).toDouble(&ok);
        if (!ok || std::abs(value) > double(std::numeric_limits<float>::max()))
            return QString::number(3 + i).prepend(QLatin1String("The ")) + QLatin1String(". parameter \"")
                + shares.at(i) + QLatin1String("\" is not a float");
    }
    for (const QString& share : shares) {
        const double value = share.toDouble();
        if (value != value || value < 0.0 || float(value) > 1.0F)
            return QStringLiteral("Only a Position between 0.0 and 1.0 is allowed");
    }
    return QString();
}

// A text of the test as it comes out when it is a part of a format.
QString asFormat(const QString& text)
{
    return fuzzing::shown(text).replace(QLatin1String("%%"), QLatin1String("%")).left(2047);
}

} // namespace

bool SeenEvent::operator==(const SeenEvent& other) const
{
    return type == other.type && button == other.button && buttons == other.buttons && modifiers == other.modifiers
        && position == other.position;
}

MouseOutcome mouseOutcome(const QString& command, const QRect& rect)
{
    QStringList parts = command.split(QLatin1Char(':'));
    while (parts.size() < 5)
        parts.append(QString());
    QPoint point = rect.center();
    QStringList shares = parts.mid(2, 2);
    if (shares != QStringList({QString(), QString()})) {
        shares.replaceInStrings(QRegularExpression(QStringLiteral("\\A\\z")), QStringLiteral("0.5"));
        const QString error = positionError(shares);
        if (!error.isEmpty())
            return {asFormat(error), {}};
        point = rect.topLeft()
            + QPoint(static_cast<int>(shares.at(0).toFloat() * static_cast<float>(rect.width())),
                static_cast<int>(shares.at(1).toFloat() * static_cast<float>(rect.height())));
    }
    if (!buttonWords().contains(parts.at(1)))
        return {asFormat(unknownWord(parts.at(1), "Button")), {}};
    if (!modifierWords().contains(parts.at(4)))
        return {asFormat(unknownWord(parts.at(4), "Modifier")), {}};
    if (!typeEvents().contains(parts.at(0)))
        return {asFormat(unknownWord(parts.at(0), "Type")), {}};
    const int button = buttonWords().value(parts.at(1));
    const int modifiers = modifierWords().value(parts.at(4));
    MouseOutcome outcome;
    const QList<int> types = typeEvents().value(parts.at(0));
    for (const int type : types) {
        const bool released = type == QEvent::MouseButtonRelease;
        outcome.events.append({type, button, released ? 0 : button, modifiers, point});
        if (released && button == Qt::RightButton)
            outcome.events.append({QEvent::ContextMenu, 0, 0, modifiers, point});
    }
    return outcome;
}

QString itemCommandError(const QString& command)
{
    const QStringList parts = command.split(QLatin1Char(':'));
    if (parts.size() != 5)
        return QStringLiteral("Invalid string value");
    if (parts.at(1) != QLatin1String("LeftButton") && parts.at(1) != QLatin1String("RightButton"))
        return QStringLiteral("Mouse button not supported");
    if (!modifierWords().contains(parts.at(4)) || parts.at(4) == QLatin1String("NoModifier"))
        return QStringLiteral("Mouse modifier not supported");
    if (!typeEvents().contains(parts.at(0)) || typeEvents().value(parts.at(0)).isEmpty())
        return QStringLiteral("Invalid mouse command");
    return QString();
}

QString clickCommandError(const QString& command, const QString& ending)
{
    const QRegularExpression form(
        QLatin1String("\\AMouse(Press|Release|Click|DoubleClick):(Left|Right)Button") + ending + QLatin1String("\\z"));
    return form.match(command).hasMatch() ? QString() : QStringLiteral("Invalid string value");
}

} // namespace naive
