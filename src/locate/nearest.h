#pragma once

#include <vector>

class QWidget;

namespace locate {

struct Step;

// Suggestions for a step that fits none of the widgets: those that fit except for the position; or else those that
// fulfil all conditions but one; or else those with a similar text. The most similar ones come first. The widgets are
// those of one window, and alive.
std::vector<QWidget*> nearestWidgets(const Step& step, QWidget* window, const std::vector<QWidget*>& widgets);

} // namespace locate
