#pragma once

#include "proxy/stwidgetproxy.h"

// Tool boxes.
class STQToolBox : public STWidgetProxy
{
public:
    // A string clicks the first visible page header with exactly that text, its "&" included. `option` is
    // ignored.
    void activate(const QVariant& value, const QVariant& option) override;
    // "itemList": the texts of all pages; "currentText": that of the current one.
    QStringList pseudoPropertyNames() override;
    QVariant pseudoProperty(const char* name, const QVariant& argument) override;
};
