#pragma once

#include <QtCore/QString>

namespace locate {

// The markup in a text that the application has set.
enum class Markup {
    None, // nothing
    Mnemonics, // "&" marks the next character, "&&" is an "&", and what follows a tab is a shortcut
    Rich, // it is HTML
};

// The text as a user sees it, which locators compare and snapshots contain: without markup, each run of white space as
// one blank, and none at the ends. An "&" before a blank or at the end marks nothing and stays: "Tom & Jerry".
QString shownText(const QString& text, Markup markup);

// A text as it is shown, with which many others are compared.
class ShownComparison
{
public:
    explicit ShownComparison(const QString& shown);

    // Whether shownText() would return that text. Compares without building it, unless the text is rich.
    bool isShownOf(const QString& text, Markup markup) const
    {
        return !(markup != Markup::Rich && isOther(text, markup == Markup::Mnemonics)) && isEqualToShown(text, markup);
    }

private:
    bool isOther(const QString& text, bool hasMnemonics) const;
    bool isEqualToShown(const QString& text, Markup markup) const;

    const QString shown;
    const int comparedAtEnd; // the number of its last characters that can tell texts apart
};

} // namespace locate
