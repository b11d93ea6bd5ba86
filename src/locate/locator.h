#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <vector>

namespace locate {

// The language in which tests say which widget they mean, as docs/protocol.md has it:
//
//   locator   = step { ">>" step }                      each within what the one before it found
//   step      = [class] { condition } [position]        words between blanks, at least one
//   class     = name { "::" name } | "*"
//   condition = key ("=" | "*=" | "~=") value
//   value     = word without blanks and quotes | '"' { any but '"' and '\' | '\"' | '\\' | '\n' | '\t' } '"'
//   position  = "first" | "last" | "nth=" number

enum class Key {
    Name,
    Text,
    Label,
    Placeholder,
    ToolTip,
    Action,
    Accessible,
    Title,
    Path,
    Reference,
    Visible,
    Property
};
enum class Operator { Equals, Contains, Matches };
enum class Visibility { Visible, Hidden, Any };
enum class Position { All, First, Last, Nth };

struct Condition
{
    Key key;
    Operator comparison;
    QString value;
    QByteArray property; // its name, with Key::Property
    int at; // where it begins in the locator
};

struct Step
{
    QByteArray className; // empty for any
    std::vector<Condition> conditions;
    Visibility visibility = Visibility::Visible;
    Position position = Position::All;
    int nth = 0; // from 0, with Position::Nth
};

struct Locator
{
    std::vector<Step> steps;
};

// Why a text is no locator, and at which of its characters, counted from 0, that shows. Thrown by parseLocator().
struct LocatorError
{
    QString reason;
    int at;
};

Locator parseLocator(const QString& text);

} // namespace locate
