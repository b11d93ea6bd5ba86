#pragma once

#include "proxy/stwidgetproxy.h"

class QAbstractButton;

// Tool boxes.
class STQToolBox : public STWidgetProxy
{
public:
    // A string clicks the first visible page header with exactly that text, its "&" included. `option` is
    // ignored.
    void activate(const QVariant& value, const QVariant& option) override;
    // Looks for the item that activate() would.
    void lookForItem(const QVariant& value) override;
    // "itemList": the texts of all pages; "currentText": that of the current one.
    QStringList pseudoPropertyNames() override;
    QVariant pseudoProperty(const char* name, const QVariant& argument) override;

private:
    // The button of the page with that text. Raises an error when there is none that is enabled.
    const QAbstractButton* requiredHeader(const QVariant& value);
};
