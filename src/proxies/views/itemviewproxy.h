#pragma once

#include "proxy/stwidgetproxy.h"

#include <QtCore/QPersistentModelIndex>

class QAbstractItemView;

namespace views {

// The place of an item under a view's root, to walk to while the application may change its model. It follows
// the item when others are inserted, removed or sorted, and stays where it was when the item itself is
// removed.
class ItemPlace
{
public:
    ItemPlace(const QAbstractItemView& view, int row, int column);

    int row() const { return item.isValid() ? item.row() : originalRow; }
    int column() const { return item.isValid() ? item.column() : originalColumn; }

private:
    QPersistentModelIndex item;
    int originalRow;
    int originalColumn;
};

// The current item's rectangle as far as the viewport shows it, in viewport coordinates; a null rectangle
// when no item is current, an empty one when the current item is out of sight.
QRect currentItemRect(const QAbstractItemView& view);

// Base of list views, tree views and tables, which work at the current item, with the keyboard and the mouse. Keys run
// code of the application, which may delete the view: nothing here keeps a pointer across them.
class ItemViewProxy : public STWidgetProxy
{
public:
    ItemArea showItem(const QVariant& item) override;
    ItemState itemState(const QVariant& item) override;

protected:
    // The item that activate() takes the same value for. Raises an error where there is none.
    virtual QModelIndex itemIndex(const QVariant& item) = 0;
    enum class Visibility { Required, Ignored };
    enum class Axis { Rows, Columns };

    // The bound view, checked anew at each call.
    QAbstractItemView* itemView();
    // The current index. Raises "No item is current".
    QModelIndex requiredCurrentIndex();
    // Raises "Current item is not checkable" for an item whose check state is not the user's.
    static void requireCheckable(const QModelIndex& current);

    // Raises an error that clears when the item is enabled. `name` is the item as the request names it.
    static void requireEnabled(const QModelIndex& item, const QVariant& name);

    // Plays a mouse command at the centre of the current item, or of the viewport when no item is current. An item that
    // is out of sight raises "Current item not visible" with Visibility::Required. With Ignored the mouse goes to the
    // centre of the empty rectangle, near the viewport's corner: tests of trees and tables were written so.
    void playMouseAtCurrentItem(const QVariant& command, Visibility visibility);

    // From now on keys go to the view, its editor and what belongs to these, and nowhere else.
    void keepKeysInView();
    // Focuses the view and presses Up once. Raises the message when the view does not have the focus then.
    void takeFocusByKey(const QString& errorMessage);
    // Presses a key until the current item's row or column is that of the place, at most five times per row or column
    // of the model. It is no error if it does not get there.
    void pressUntil(Axis axis, const ItemPlace& place, int key, Qt::KeyboardModifiers modifiers);

    // The optional text of one character to type after activating; empty for none. Raises an error for any
    // other.
    QString terminatingKey(const QVariant& option);
    // Types it, unless it is empty, as the operation's last input.
    void typeTerminatingKey(const QString& key);

    // F2, which opens the current item's editor. The keys that follow are for that editor: once it is closed or
    // deleted, they raise "Internal error, proxy without widget". If none has opened they go to the view.
    void openEditor();
    // Return in the editor, as the operation's last input.
    void commitEditor();
    // Opens the current item's editor, replaces its text by a paste from the clipboard, and commits it.
    // Raises "enter, QLineEdit validate error\n", or the same for QAbstractSpinBox, when the editor does not
    // take the text; it stays open then.
    void replaceTextInEditor(const QString& text);

private:
    void requireTextInEditor(const QString& text);
};

} // namespace views
