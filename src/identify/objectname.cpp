#include "identify/objectname.h"

#include <QAction>
#include <QInputDialog>
#include <QPushButton>
#include <QStringList>
#include <QToolButton>

#include <cstring>

const QLatin1String actionButtonSuffix("_action_button");
const QLatin1String dialogButtonSuffix("_dialog_button");
const QLatin1String inputDialogSuffix("__widget__");
const QLatin1String unnamed("unnamed");

namespace {

// The object name of the button's one action; empty when it has none, or several actions.
QString soleActionName(const QToolButton* button)
{
    const QList<QAction*> actions = button->actions();
    return actions.size() == 1 ? actions.first()->objectName() : QString();
}

bool isInputDialogChild(const QObject* object)
{
    return qobject_cast<const QInputDialog*>(object->parent());
}

const int asciiCount = 128;

// The ASCII characters in one case. "&" and blanks, which no synthetic name has, are 0.
struct AsciiCase
{
    ushort characters[asciiCount];
};

constexpr AsciiCase asciiCase(ushort from, ushort to, int difference)
{
    AsciiCase table{};
    for (ushort code = 0; code < asciiCount; ++code) {
        const bool isLeftOut = code == '&' || code == ' ' || (code >= '\t' && code <= '\r');
        const bool isChanged = code >= from && code <= to;
        table.characters[code] = static_cast<ushort>(isLeftOut ? 0 : isChanged ? code + difference : code);
    }
    return table;
}

constexpr AsciiCase upperCase = asciiCase('a', 'z', 'A' - 'a');
constexpr AsciiCase lowerCase = asciiCase('A', 'Z', 'a' - 'A');

// Whether the text and the name end alike but for case: false if the text cannot become the name. The labels of one
// window, such as numbered ones, differ at their ends more often than at their beginnings.
bool endsAlike(const QString& text, const QString& name)
{
    const QChar* character = text.constData() + text.size();
    const QChar* expected = name.constData() + name.size();
    while (character != text.constData() && expected != name.constData()) {
        const ushort code = (--character)->unicode();
        if (code == 0 || code >= asciiCount)
            break;
        const ushort wanted = lowerCase.characters[code];
        if (wanted == 0)
            continue;
        const ushort found = (--expected)->unicode();
        if (found != wanted && found != upperCase.characters[code])
            return false;
    }
    return true;
}

} // namespace

QString getName(const QObject* object)
{
    const QString objectName = object->objectName();
    if (!objectName.isEmpty())
        return objectName;
    if (const auto* button = qobject_cast<const QToolButton*>(object)) {
        const QString action = soleActionName(button);
        if (!action.isEmpty())
            return action + actionButtonSuffix;
    }
    if (const auto* button = qobject_cast<const QPushButton*>(object))
        return syntheticName(button->text()) + dialogButtonSuffix;
    if (isInputDialogChild(object))
        return QLatin1String(object->metaObject()->className()) + inputDialogSuffix;
    return unnamed;
}

bool hasName(const QObject* object, const QString& name)
{
    const QString objectName = object->objectName();
    if (!objectName.isEmpty())
        return objectName == name;
    // Most names that are compared were given: they end otherwise, and are told without a look at the widget's text.
    if (const auto* button = qobject_cast<const QToolButton*>(object)) {
        const QString action = soleActionName(button);
        if (!action.isEmpty())
            return name.endsWith(actionButtonSuffix) && withoutSuffix(name, actionButtonSuffix) == action;
    }
    if (qobject_cast<const QPushButton*>(object))
        return name.endsWith(dialogButtonSuffix)
            && hasDialogButtonStem(object, withoutSuffix(name, dialogButtonSuffix));
    if (!isInputDialogChild(object))
        return name == unnamed;
    return name.endsWith(inputDialogSuffix) && hasInputDialogChildStem(object, withoutSuffix(name, inputDialogSuffix));
}

QString syntheticName(QString text)
{
    text.remove(QLatin1Char('&'));
    QStringList words = text.simplified().toLower().split(QLatin1Char(' '));
    for (QString& word : words) {
        // A label of blanks has one empty word. Writing its first character makes it one U+0000 long, so that such
        // a button still has a name of its own.
        if (word.isEmpty())
            word = QString(1, QChar());
        word[0] = word.at(0).toUpper();
    }
    return words.join(QString());
}

bool isSyntheticName(const QString& text, const QString& name)
{
    if (!endsAlike(text, name))
        return false;
    const QChar* expected = name.constData();
    const QChar* const end = expected + name.size();
    const AsciiCase* inCase = &upperCase;
    for (const QChar character : text) {
        const ushort code = character.unicode();
        if (code >= asciiCount)
            return syntheticName(text) == name; // in another case, one character may be several
        const ushort wanted = inCase->characters[code];
        if (wanted != 0 || code == 0) {
            if (expected == end || expected->unicode() != wanted)
                return false;
            ++expected;
            inCase = &lowerCase;
        } else if (code != '&') {
            inCase = &upperCase;
        }
    }
    const bool anyCharacter = expected != name.constData();
    return anyCharacter ? expected == end : name == QString(1, QChar());
}

bool isA(const QObject* object, const char* className)
{
    return std::strcmp(object->metaObject()->className(), className) == 0;
}

QString withoutSuffix(const QString& name, QLatin1String suffix)
{
    return name.left(name.size() - static_cast<int>(qstrlen(suffix.latin1())));
}

bool hasActionButtonStem(const QObject* object, const QString& stem)
{
    const auto* button = qobject_cast<const QToolButton*>(object);
    if (!button)
        return false;
    const QList<QAction*> actions = button->actions();
    return actions.size() == 1 && actions.first()->objectName() == stem;
}

bool hasDialogButtonStem(const QObject* object, const QString& stem)
{
    const auto* button = qobject_cast<const QPushButton*>(object);
    return button && isSyntheticName(button->text(), stem);
}

bool hasInputDialogChildStem(const QObject* object, const QString& stem)
{
    return isInputDialogChild(object) && stem == QLatin1String(object->metaObject()->className());
}
