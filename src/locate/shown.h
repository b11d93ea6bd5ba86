#pragma once

#include <QtCore/QString>

namespace locate {

// The markup in a text that the application has set, which is not shown as it stands.
enum class Markup {
    None, // nothing
    Mnemonics, // "&" marks the next character, "&&" is an "&", and what follows a tab is a shortcut
    Rich, // it is HTML
};

// The text as locators compare it and snapshots tell it: what is shown of it, with each run of white space as one blank,
// and none at the ends. An "&" before a blank or the end is one of its own: "Tom & Jerry".
QString shownText(const QString& text, Markup markup);

// Whether shownText() would give that text, found out without making it unless the text is rich.
bool isShownText(const QString& text, Markup markup, const QString& shown);

} // namespace locate
