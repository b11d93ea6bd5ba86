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
    // The header of a page named in the same way.
    ItemArea showItem(const QVariant& item) override;
    ItemState itemState(const QVariant& item) override;
    // "itemList": the texts of all pages; "currentText": that of the current one.
    QStringList pseudoPropertyNames() override;
    QVariant pseudoProperty(const char* name, const QVariant& argument) override;

private:
    // The header of the page that a value names; enabledHeader() also requires that it is enabled. They raise errors.
    QAbstractButton* header(const QVariant& value);
    QAbstractButton* enabledHeader(const QVariant& value);
};
