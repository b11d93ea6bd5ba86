#pragma once

#include <vector>

class QWidget;

namespace locate {

struct Step;

// Those of the widgets that a test may have meant by a step that fits none of them: at its position there is none, though
// there are some elsewhere; or all but one of its conditions are fulfilled; or, where there are none of these, a text is
// similar, the most similar first. The widgets are those of one window, and alive.
std::vector<QWidget*> nearestWidgets(const Step& step, QWidget* window, const std::vector<QWidget*>& widgets);

} // namespace locate
