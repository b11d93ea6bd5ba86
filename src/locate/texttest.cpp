#include "locate/texttest.h"

namespace locate {

namespace {

// The value with the marks of mnemonics read as such; null where that is no other text.
QString withoutMnemonics(const QString& value, const QString& asShown)
{
    const QString written = value.contains(QLatin1Char('&')) || value.contains(QLatin1Char('\t'))
        ? shownText(value, Markup::Mnemonics)
        : asShown;
    return written.isEmpty() || written == asShown ? QString() : written; // nothing of a shortcut is looked for
}

} // namespace

TextTest::TextTest(const Condition& condition)
    : comparison(condition.comparison)
    , value(condition.value)
    , asShown(comparison == Operator::Matches ? QString() : shownText(value, Markup::None))
    , asWritten(comparison == Operator::Matches ? QString() : withoutMnemonics(value, asShown))
    , shownOne(asShown)
    , writtenOne(asWritten)
{
    if (comparison == Operator::Matches)
        pattern = std::make_shared<const compat::Pattern>(value);
}

bool TextTest::visit(const QString& text, Markup markup)
{
    if (comparison == Operator::Equals)
        return shownOne.isShownOf(text, markup) || (!asWritten.isNull() && writtenOne.isShownOf(text, markup));
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
