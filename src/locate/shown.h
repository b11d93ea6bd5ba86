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

// Whether shownText() would return that text. Compares without building it, unless the text is rich.
bool isShownText(const QString& text, Markup markup, const QString& shown);

} // namespace locate
