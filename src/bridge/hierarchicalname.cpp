#include "bridge/hierarchicalname.h"

#include "bridge/nameprovider.h"

#include <QWidget>

#include <stdexcept>

namespace LmSquishProxy {

int trailingWildcards(const QStringList& name)
{
    const int size = static_cast<int>(name.size());
    int count = 0;
    while (count < size && name.at(size - 1 - count).isNull())
        ++count;
    return count;
}

bool ancestorsFit(const QWidget* widget, const QStringList& name, int index)
{
    for (;; --index) {
        if (index >= name.size())
            throw std::logic_error("checkPath(): internal error");
        if (index < 0)
            return true;
        if (index == 0 && name.first().isNull())
            return widget && !widget->parentWidget();

        const bool afterGap = name.at(index).isNull();
        for (; index >= 0 && name.at(index).isNull(); --index) {
            widget = widget ? widget->parentWidget() : nullptr;
            if (!widget)
                return false;
        }
        if (index < 0 || !widget)
            return true;

        widget = widget->parentWidget();
        if (!widget)
            return false;
        while (afterGap && widget && bridgeName(widget) != name.at(index))
            widget = widget->parentWidget();
        if (!afterGap && bridgeName(widget) != name.at(index))
            return false;
    }
}

} // namespace LmSquishProxy
