#pragma once

#include <QtCore/QStringList>

// Whether a widget path fits a chain of widgets. The chain stands on the widget, and goes up to its top:
//   bool isNamed(const QString& name)   whether that is the name of where it stands
//   bool isTop()                        whether it stands on the last widget that the path may name
//   void goUp()                         to the parent
template <class Chain>
bool pathFits(Chain chain, const QStringList& path)
{
    int element = static_cast<int>(path.size()) - 1;
    while (true) {
        const bool afterGap = path.at(element).isEmpty();
        while (path.at(element).isEmpty()) {
            if (element == 0)
                return true;
            --element;
        }
        while (!chain.isNamed(path.at(element))) {
            if (!afterGap || chain.isTop())
                return false;
            chain.goUp();
        }
        if (element == 0)
            return true;
        if (chain.isTop())
            return false;
        chain.goUp();
        --element;
    }
}
