#pragma once

#include "locate/locator.h"

#include <QPointer>
#include <QWidget>

#include <vector>

namespace locate {

enum class Outcome { One, Several, Hidden, None };

struct SearchResult
{
    Outcome outcome = Outcome::None;
    int count = 0; // of widgets that fit, with Several and Hidden
    // The one; or the first of several, or of the hidden ones; or the nearest. At most `maximumWidgets`.
    std::vector<QPointer<QWidget>> widgets;

    static const int maximumWidgets = 8;
};

// Searches a window and the widgets below it, except those in other windows, for what a locator means. A path in the
// first step also finds widgets in other windows below this one, as the commands do.
SearchResult search(QWidget* window, const Locator& locator);

} // namespace locate
