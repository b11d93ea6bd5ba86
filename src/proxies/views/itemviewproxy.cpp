#include "proxies/views/itemviewproxy.h"

#include "compat/stacking.h"
#include "compat/variant.h"
#include "proxies/clipboardpaste.h"
#include "proxies/views/itemarea.h"
#include "proxies/views/itemmousecommand.h"
#include "proxies/views/itemtext.h"
#include "proxies/views/sections.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QChildEvent>
#include <QLineEdit>

#include <limits>

namespace views {

namespace {

const char noCurrentMessage[] = "No item is current";
const char notCheckableMessage[] = "Current item is not checkable";
const char disabledMessage[] = "Item \"%s\" is disabled";
const char notVisibleMessage[] = "Current item not visible";
const char longTerminatorMessage[] = "terminating key is more than one character";
const char lineEditMessage[] = "enter, QLineEdit validate error\n";
const char spinBoxMessage[] = "enter, QAbstractSpinBox validate error\n";

// Remembers the last widget that was added to a viewport: an editor can be gone before the key that opens it is
// completely handled.
class LastChild : public QObject
{
public:
    explicit LastChild(QObject* viewport) { viewport->installEventFilter(this); }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::ChildAdded) {
            child = static_cast<QChildEvent*>(event)->child();
            wasAdded = true;
        }
        return false;
    }

    // Whether one was added that is closed or deleted already.
    bool isGone() const
    {
        const QWidget* widget = qobject_cast<QWidget*>(child.data());
        return wasAdded && (!widget || !widget->isVisible());
    }

private:
    QPointer<QObject> child;
    bool wasAdded = false;
};

// The editor that has the focus in a view; null when the view has none open.
QWidget* focusedEditor(const QAbstractItemView& view)
{
    QWidget* editor = QApplication::focusWidget();
    while (editor && editor->parentWidget() != view.viewport())
        editor = editor->parentWidget();
    return editor;
}

} // namespace

ItemPlace::ItemPlace(const QAbstractItemView& view, int row, int column)
    : item(cellAt(view.model(), row, column, view.rootIndex()))
    , originalRow(row)
    , originalColumn(column)
{
}

STWidgetProxy::ItemArea ItemViewProxy::showItem(const QVariant& item)
{
    const QModelIndex index = itemIndex(item);
    return views::showItem(itemView(), index, item.toString());
}

STWidgetProxy::ItemState ItemViewProxy::itemState(const QVariant& item)
{
    const QModelIndex index = itemIndex(item);
    return views::itemState(itemView(), index);
}

QAbstractItemView* ItemViewProxy::itemView()
{
    return static_cast<QAbstractItemView*>(checkedWidget("QAbstractItemView"));
}

QRect currentItemRect(const QAbstractItemView& view)
{
    const QModelIndex current = view.currentIndex();
    return current.isValid() ? view.visualRect(current).intersected(view.viewport()->rect()) : QRect();
}

QModelIndex ItemViewProxy::requiredCurrentIndex()
{
    const QModelIndex current = itemView()->currentIndex();
    if (!current.isValid())
        proxy::raiseError(noCurrentMessage);
    return current;
}

void ItemViewProxy::requireCheckable(const QModelIndex& current)
{
    if (!(current.flags() & Qt::ItemIsUserCheckable))
        proxy::raiseError(notCheckableMessage);
}

void ItemViewProxy::requireEnabled(const QModelIndex& item, const QVariant& name)
{
    if (!(item.flags() & Qt::ItemIsEnabled))
        proxy::raiseNotYet(proxy::disabledItem(compat::textOf(name)), disabledMessage, compat::textOf(name));
}

void ItemViewProxy::playMouseAtCurrentItem(const QVariant& command, Visibility visibility)
{
    if (compat::typeOf(command) != QMetaType::QString)
        typeError("string");
    const QAbstractItemView* view = itemView();
    const bool hasCurrent = view->currentIndex().isValid();
    const QRect rect = hasCurrent ? currentItemRect(*view) : view->viewport()->rect();
    if (hasCurrent && rect.isEmpty() && visibility == Visibility::Required)
        proxy::raiseError(notVisibleMessage);
    const QPoint point = globalCenter(view->viewport(), rect);
    stopProcessingEvents();
    const ItemMouseCommand mouse = itemMouseCommand(command.toString());
    mouseMove(point, Qt::NoModifier); // without the modifier: a press and a release move once more, with it
    playMouse(mouse.type, point, mouse.button, mouse.modifiers);
}

void ItemViewProxy::keepKeysInView()
{
    dedicateKeysTo(itemView(), KeyScope::Owner);
}

void ItemViewProxy::openEditor()
{
    const LastChild opened(itemView()->viewport());
    keyClick(Qt::Key_F2, Qt::NoModifier);
    if (QWidget* editor = focusedEditor(*itemView()))
        dedicateKeysTo(editor, KeyScope::OpenEditor);
    else if (opened.isGone())
        proxy::raiseError(proxy::deadWidgetMessage);
}

void ItemViewProxy::commitEditor()
{
    // An editor may have closed itself with the last of the text: the key is the view's then.
    keepKeysInView();
    confirm();
}

void ItemViewProxy::takeFocusByKey(const QString& errorMessage)
{
    keepKeysInView();
    compat::activateWindow(itemView());
    itemView()->setFocus(Qt::OtherFocusReason);
    keyClick(Qt::Key_Up, Qt::NoModifier);
    syncEvents();
    if (!itemView()->hasFocus())
        proxy::raiseError(errorMessage);
}

void ItemViewProxy::pressUntil(Axis axis, const ItemPlace& place, int key, Qt::KeyboardModifiers modifiers)
{
    const qint64 pressesPerSection = 5;
    const bool rows = axis == Axis::Rows;
    const auto count = [&] { return rows ? rowCountUnderRoot(*itemView()) : columnCountUnderRoot(*itemView()); };
    const auto current = [&] {
        const QModelIndex index = itemView()->currentIndex();
        return rows ? index.row() : index.column();
    };
    const auto goal = [&] { return rows ? place.row() : place.column(); };
    const bool isForward = current() < goal();
    qint64 maximumPresses = std::numeric_limits<qint64>::max();
    for (qint64 presses = 0; presses < qMin(maximumPresses, pressesPerSection * count()); ++presses) {
        keyClick(key, modifiers);
        if (current() == goal())
            return;
        // Past the goal, which may be hidden, rows that a model goes on adding do not make the walk longer.
        if (isForward ? current() > goal() : current() < goal())
            maximumPresses = qMin(maximumPresses, pressesPerSection * count());
    }
}

QString ItemViewProxy::terminatingKey(const QVariant& option)
{
    if (option.isValid() && compat::typeOf(option) != QMetaType::QString)
        typeError("string");
    const QString key = option.toString();
    if (key.size() > 1)
        proxy::raiseError(longTerminatorMessage);
    return key;
}

void ItemViewProxy::typeTerminatingKey(const QString& key)
{
    if (key.isEmpty())
        return;
    stopProcessingEvents();
    keyClick(key.at(0));
}

void ItemViewProxy::replaceTextInEditor(const QString& text)
{
    openEditor();
    proxies::pasteText(text, [this] {
        keyClick(Qt::Key_End, Qt::NoModifier);
        keyClick(Qt::Key_Home, Qt::ShiftModifier);
        keyClick(Qt::Key_V, Qt::ControlModifier);
    });
    requireTextInEditor(text);
    commitEditor();
}

void ItemViewProxy::requireTextInEditor(const QString& text)
{
    const QWidget* editor = QApplication::focusWidget();
    if (!editor || editor != itemView()->focusWidget())
        return;
    if (editor->inherits("QLineEdit")) {
        if (static_cast<const QLineEdit*>(editor)->text() != text)
            proxy::raiseError(lineEditMessage);
    } else if (editor->inherits("QAbstractSpinBox")) {
        if (static_cast<const QAbstractSpinBox*>(editor)->text() != text)
            proxy::raiseError(spinBoxMessage);
    }
}

} // namespace views
