#pragma once

#include "identify/widgetpath.h"

// Whether a widget path fits a chain of widgets. The chain stands on the widget, and goes up to its top:
//   bool isNamed(const QString& name)   whether that is the name of where it stands
//   bool isTop()                        whether it stands on the last widget that the path may name
//   void goUp()                         to the parent
template <class Chain>
bool pathFits(Chain chain, const WidgetPath& path)
{
    for (std::size_t fromEnd = 0;; ++fromEnd) {
        const WidgetPath::Step& step = path.step(fromEnd);
        if (step.name.isEmpty())
            return true;
        while (!chain.isNamed(step.name)) {
            if (!step.isAfterGap || chain.isTop())
                return false;
            chain.goUp();
        }
        if (step.isOutermost)
            return true;
        if (chain.isTop())
            return false;
        chain.goUp();
    }
}
