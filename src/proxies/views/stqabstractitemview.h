#pragma once

#include "proxy/stwidgetproxy.h"

#include <QtCore/QModelIndex>

class QAbstractItemView;

namespace views {
struct ItemAddress;
}

// Any item view that has no proxy of its own, by means of its model and its selection model only: no keys, no
// mouse. Items are addressed by model index paths, "row;column/row;column", from the model's top down to the
// item; each is a number from 1 or a header's text, and a step without column means column 1. The empty path
// is the root.
class STQAbstractItemView : public STWidgetProxy
{
public:
    // A path, and in `option` one of the texts "Select", "Deselect", "Toggle", "ClearAndSelect", "Clear",
    // "ScrollTo". Scrolls to the item, whatever the text is, and changes the selection. The current item
    // stays what it is.
    void activate(const QVariant& path, const QVariant& command) override;
    // Looks for the item that activate() would.
    void lookForItem(const QVariant& path) override;
    // By a path, or by a header address as below: then the section of the header.
    ItemArea showItem(const QVariant& item) override;
    ItemState itemState(const QVariant& item) override;
    // "columnCount", "rowCount", "itemIsSelected", "itemIsExpanded", "itemData", "itemPosition", by a path or
    // by a header address: "V:" and a row, or "H:", "h:" or "v:" and a column, as a number from 1 or a
    // header's text.
    QStringList pseudoPropertyNames() override;
    QVariant pseudoProperty(const char* name, const QVariant& argument) override;

private:
    // Raises "Invalid Widget" when the widget is no item view or has no model.
    QAbstractItemView* modelledView();
    // The index at the end of a path.
    QModelIndex resolveItemPath(const QString& path);
    // The item or section to which a path or a header address leads.
    views::ItemAddress addressOf(const QString& text);
};
