#include "proxies/containers/stqtabbar.h"

#include "compat/children.h"
#include "compat/variant.h"
#include "proxy/pseudoproperties.h"

#include <QTabBar>
#include <QToolButton>

namespace {

const char indexRange[] = "[0, %d]";

QString stripped(const QString& text)
{
    return STWidgetProxy::stripMnemonic(text);
}

QStringList strippedTexts(const QTabBar& bar, QString (QTabBar::*text)(int) const)
{
    QStringList texts;
    for (int i = 0; i < bar.count(); ++i)
        texts.append(stripped((bar.*text)(i)));
    return texts;
}

// The visible buttons with which the bar is scrolled.
QList<QToolButton*> arrowButtons(const QTabBar& bar)
{
    QList<QToolButton*> arrows;
    const QList<QToolButton*> buttons = compat::findChildren<QToolButton>(&bar);
    for (QToolButton* button : buttons) {
        if (button->parentWidget() == &bar && button->isVisible() && button->arrowType() != Qt::NoArrow)
            arrows.append(button);
    }
    return arrows;
}

// The rectangle of a tab as far as neither the bar's edges nor its arrow buttons hide it.
QRect shownPart(const QTabBar& bar, int index)
{
    QRegion shown(bar.tabRect(index).intersected(bar.rect()));
    const QList<QToolButton*> arrows = arrowButtons(bar);
    for (const QToolButton* arrow : arrows)
        shown -= arrow->geometry();
    return shown.boundingRect();
}

// The arrow button that scrolls towards a tab; null when all of the tab is visible.
QToolButton* arrowTowards(const QTabBar& bar, int index)
{
    const QRect whole = bar.tabRect(index);
    const QRect shown = shownPart(bar, index);
    if (shown == whole)
        return nullptr;
    const bool isBefore = whole.left() < 0 || whole.top() < 0;
    const QList<QToolButton*> arrows = arrowButtons(bar);
    for (QToolButton* arrow : arrows) {
        const bool leadsBack = arrow->arrowType() == Qt::LeftArrow || arrow->arrowType() == Qt::UpArrow;
        if (leadsBack == isBefore)
            return arrow;
    }
    return nullptr;
}

// The list of tool tips is stripped and the current tool tip is not: tests compare them so.
const proxy::PseudoProperty<const QTabBar&> pseudoProperties[] = {
    {"itemList", [](const QTabBar& bar) -> QVariant { return strippedTexts(bar, &QTabBar::tabText); }},
    {"toolTipList", [](const QTabBar& bar) -> QVariant { return strippedTexts(bar, &QTabBar::tabToolTip); }},
    {"currentText", [](const QTabBar& bar) -> QVariant { return stripped(bar.tabText(bar.currentIndex())); }},
    {"currentToolTip", [](const QTabBar& bar) -> QVariant { return bar.tabToolTip(bar.currentIndex()); }},
};

} // namespace

void STQTabBar::activate(const QVariant& value, const QVariant&)
{
    const int index = indexOf(value);
    const QTabBar* bar = tabBar();
    clickCenter(bar, bar->tabRect(index));
}

void STQTabBar::lookForItem(const QVariant& value)
{
    const int index = indexOf(value);
    if (!tabBar()->isTabEnabled(index))
        rangeNotYet(proxy::disabledItem(value.toString()), indexRange, tabBar()->count() - 1);
}

int STQTabBar::indexOf(const QVariant& value)
{
    const int type = compat::typeOf(value);
    if (type != QMetaType::QString && type != QMetaType::Int)
        typeError("string, integer");
    const QTabBar* bar = tabBar();
    const int index
        = type == QMetaType::Int ? value.toInt() : strippedTexts(*bar, &QTabBar::tabText).indexOf(value.toString());
    if (bar->tabRect(index).isNull()) // also for an index that no tab has, such as the -1 of an unknown text
        rangeNotYet(proxy::missingItem(value.toString()), indexRange, bar->count() - 1);
    return index;
}

STWidgetProxy::ItemArea STQTabBar::showItem(const QVariant& item)
{
    scrollTo(indexOf(item));
    const int index = indexOf(item); // anew, since clicks run code of the application
    QTabBar* bar = tabBar();
    const QRect rect = shownPart(*bar, index);
    if (rect.isEmpty())
        rangeNotYet(proxy::hiddenItem(item.toString()), indexRange, bar->count() - 1);
    return {bar, rect, bar->isTabEnabled(index)};
}

STWidgetProxy::ItemState STQTabBar::itemState(const QVariant& item)
{
    const int index = indexOf(item);
    const QTabBar* bar = tabBar();
    QStringList states;
    if (!bar->isTabEnabled(index))
        states.append(QLatin1String("disabled"));
    if (index == bar->currentIndex())
        states.append(QLatin1String("selected"));
    return {stripped(bar->tabText(index)), states};
}

void STQTabBar::scrollTo(int index)
{
    const int maximumClicks = tabBar()->count();
    for (int i = 0; i < maximumClicks; ++i) {
        QToolButton* arrow = arrowTowards(*tabBar(), index);
        if (!arrow || !arrow->isEnabled())
            return;
        clickOnTheWay(arrow, arrow->rect());
    }
}

QStringList STQTabBar::pseudoPropertyNames()
{
    return proxy::namesOf(pseudoProperties);
}

QVariant STQTabBar::pseudoProperty(const char* name, const QVariant&)
{
    return proxy::valueOf(pseudoProperties, name, *tabBar());
}

QTabBar* STQTabBar::tabBar()
{
    return static_cast<QTabBar*>(checkedWidget("QTabBar"));
}
