#include "locate/texttest.h"

namespace locate {

TextTest::TextTest(const Condition& condition)
    : comparison(condition.comparison)
    , value(condition.value)
{
    if (comparison != Operator::Matches) {
        asShown = shownText(value, Markup::None);
        asWritten = shownText(value, Markup::Mnemonics);
        if (asWritten.isEmpty() || asWritten == asShown) // nothing of a shortcut is looked for
            asWritten = QString();
        return;
    }
    pattern = std::make_shared<const compat::Pattern>(value);
}

bool TextTest::visit(const QString& text, Markup markup)
{
    if (comparison == Operator::Equals)
        return isShownText(text, markup, asShown) || (!asWritten.isNull() && isShownText(text, markup, asWritten));
    const QString shown = shownText(text, markup);
    return comparison == Operator::Matches
        ? pattern->isIn(shown)
        : shown.contains(asShown) || (!asWritten.isNull() && shown.contains(asWritten));
}

bool TextTest::fits(const QString& text) const
{
    switch (comparison) {
    case Operator::Equals:
        return text == value;
    case Operator::Contains:
        return text.contains(value);
    case Operator::Matches:
        return pattern->isIn(text);
    }
    return false;
}

} // namespace locate
