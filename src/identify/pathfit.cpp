#include "identify/pathfit.h"

#include "identify/objectname.h"
#include "identify/widgetpath.h"

#include <QWidget>

namespace identify {

NamedWidget::NamedWidget(const QWidget* namedWidget)
    : widget(namedWidget)
    , objectName(namedWidget->objectName())
{
}

bool NamedWidget::isNamed(const QString& name) const
{
    return objectName.isEmpty() ? hasName(widget, name) : objectName == name;
}

bool pathFits(const std::vector<NamedWidget>& lineage, const WidgetPath& path)
{
    auto ancestor = lineage.rbegin();
    for (std::size_t fromEnd = 0;; ++fromEnd) {
        const WidgetPath::Step& step = path.step(fromEnd);
        if (step.name.isEmpty())
            return true;
        while (!ancestor->isNamed(step.name)) {
            if (!step.isAfterGap || ++ancestor == lineage.rend())
                return false;
        }
        if (step.isOutermost)
            return true;
        if (++ancestor == lineage.rend())
            return false;
    }
}

} // namespace identify
