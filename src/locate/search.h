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
    // The one; the first of several or of the hidden ones; or those that come nearest. At most `mostWidgets`.
    std::vector<QPointer<QWidget>> widgets;

    static const int mostWidgets = 8;
};

// The widgets of a window that a locator means: the window itself and those below it, but for other windows. A path in its
// first step finds those of other windows, too, as the commands do.
SearchResult search(QWidget* window, const Locator& locator);

} // namespace locate
