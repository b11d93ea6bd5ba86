#include "proxies/containers/stqtabbar.h"

#include "compat/variant.h"
#include "proxy/pseudoproperties.h"

#include <QTabBar>

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
    clickCenter(tabBar(), requiredTab(value));
}

void STQTabBar::lookForItem(const QVariant& value)
{
    requiredTab(value);
}

QRect STQTabBar::requiredTab(const QVariant& value)
{
    const int type = compat::typeOf(value);
    if (type != QMetaType::QString && type != QMetaType::Int)
        typeError("string, integer");
    const QTabBar* bar = tabBar();
    const int index
        = type == QMetaType::Int ? value.toInt() : strippedTexts(*bar, &QTabBar::tabText).indexOf(value.toString());
    const QRect rect = bar->tabRect(index);
    if (rect.isNull()) // also for an index that no tab has, such as the -1 of an unknown text
        rangeNotYet(proxy::missingItem(value.toString()), indexRange, bar->count() - 1);
    return rect;
}

QStringList STQTabBar::pseudoPropertyNames()
{
    return proxy::namesOf(pseudoProperties);
}

QVariant STQTabBar::pseudoProperty(const char* name, const QVariant&)
{
    return proxy::valueOf(pseudoProperties, name, *tabBar());
}

const QTabBar* STQTabBar::tabBar()
{
    return static_cast<const QTabBar*>(checkedWidget("QTabBar"));
}
