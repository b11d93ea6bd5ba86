#pragma once

#include "proxy/stwidgetproxy.h"

class QTabBar;

// Tab bars, also those of tab widgets.
class STQTabBar : public STWidgetProxy
{
public:
    // A string clicks the first tab with that text, an integer the tab with that 0-based index. The click
    // goes to the tab's place even where the bar has scrolled it out of view. `option` is ignored.
    void activate(const QVariant& value, const QVariant& option) override;
    // Looks for the item that activate() would.
    void lookForItem(const QVariant& value) override;
    // A tab named in the same way. A bar that has scrolled it out of view is scrolled with its arrow buttons.
    ItemArea showItem(const QVariant& item) override;
    ItemState itemState(const QVariant& item) override;
    // "itemList" and "toolTipList": the texts and tool tips of all tabs, "currentText" and "currentToolTip": those of
    // the current one. All come without the mnemonic's "&", except the current tool tip, which comes as it is.
    QStringList pseudoPropertyNames() override;
    QVariant pseudoProperty(const char* name, const QVariant& argument) override;

private:
    QTabBar* tabBar();
    // The number of the tab that a value names. Raises an error where no tab that is shown has it.
    int indexOf(const QVariant& value);
    void scrollTo(int index);
};
