#include "proxies/fields/stqcombobox.h"

#include "compat/children.h"
#include "compat/embedding.h"
#include "compat/variant.h"
#include "compat/waiting.h"
#include "proxy/eventkiller.h"
#include "proxy/pseudoproperties.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QPointer>

namespace {

const char unknownItemMessage[] = "activate, QComboBox unknown item %s";
const char invalidIndexMessage[] = "activate, QComboBox invalid index %d";
const char disabledItemMessage[] = "activate, QComboBox item %s is disabled";
const char unreachedItemMessage[] = "activate, QComboBox item %s is not reached by the arrow keys";
const char readOnlyMessage[] = "enter, QComboBox is read only";

// How long a list may take to open and to unroll. An editable combo box opens none, so it gets less.
const int listMilliseconds = 1000;
const int editableMilliseconds = 200;

// Waits until a popup other than `outer`, which may be open already, is the active one. Returns null when none has
// opened, or when the box has died meanwhile.
QWidget* waitForPopup(const QPointer<QComboBox>& box, const QWidget* outer, int maximumMilliseconds)
{
    const auto opened = [box, outer]() -> QWidget* {
        QWidget* popup = box ? compat::popupInFrontOf(box) : nullptr;
        return popup == outer ? nullptr : popup;
    };
    compat::processEventsUntil([&] { return opened() != nullptr; }, maximumMilliseconds);
    return opened();
}

// Stops mouse moves in the open list, where a move makes the item under the cursor the current one. The windowing
// system may deliver an earlier move between two arrow keys, and the keys would go on from that item.
class MouseMoveStop
{
public:
    explicit MouseMoveStop(QWidget* popup)
    {
        if (!popup)
            return;
        killer = new EventKiller(QEvent::MouseMove, popup);
        const QList<QWidget*> parts = compat::findChildren<QWidget>(popup);
        for (QWidget* part : parts)
            part->installEventFilter(killer);
    }

    // Stops moves until the keys that are posted so far are handled.
    ~MouseMoveStop()
    {
        if (killer)
            killer->deleteLater();
    }

private:
    QPointer<EventKiller> killer;
};

// The row where the arrow keys start, in the list rather than the box: a mouse move may have changed it already.
int currentRow(const QComboBox* box, const QWidget* popup)
{
    const auto* list = popup ? compat::findChild<QAbstractItemView>(popup) : nullptr;
    const QModelIndex current = list ? list->currentIndex() : QModelIndex();
    return current.isValid() ? current.row() : box->currentIndex();
}

QStringList itemTexts(const QComboBox& box)
{
    QStringList texts;
    for (int i = 0; i < box.count(); ++i)
        texts.append(box.itemText(i));
    return texts;
}

const proxy::PseudoProperty<const QComboBox&> pseudoProperties[] = {
    {"itemList", [](const QComboBox& box) -> QVariant { return itemTexts(box); }},
};

} // namespace

void STQComboBox::activate(const QVariant& value, const QVariant&)
{
    const int index = indexOf(value);
    const bool editable = comboBox()->isEditable();
    if (!editable && comboBox()->currentIndex() == index)
        return;
    const QWidget* outerPopup = compat::popupInFrontOf(comboBox());
    if (editable)
        clickText();
    else
        clickForList();
    const int milliseconds = editable ? editableMilliseconds : listMilliseconds;
    const QPointer<QWidget> popup(waitForPopup(comboBox(), outerPopup, milliseconds));
    const MouseMoveStop stop(popup);
    if (editable)
        keyClick(Qt::Key_Up, Qt::NoModifier);
    move(currentRow(comboBox(), editable ? nullptr : popup.data()), index);
    if (!editable)
        confirm();
}

void STQComboBox::activateFound(const QVariant& value, const QVariant&)
{
    const int index = indexOf(value);
    QWidget* outerPopup = compat::popupInFrontOf(comboBox());
    const bool isOpen = outerPopup && outerPopup->parentWidget() == comboBox();
    const bool takesKeysItself = comboBox()->isEditable() && !isOpen;
    QPointer<QWidget> list(isOpen ? outerPopup : nullptr);
    if (takesKeysItself) {
        clickText();
    } else if (!isOpen) {
        if (comboBox()->currentIndex() == index)
            return;
        clickForList();
        list = waitForPopup(comboBox(), outerPopup, listMilliseconds);
    }
    const MouseMoveStop stop(list);
    if (!walkTo(index, list)) {
        if (list)
            keyClick(Qt::Key_Escape, Qt::NoModifier);
        lookForItem(value); // the application may have taken it away
        proxy::raiseError(unreachedItemMessage, value.toString());
    }
    if (!takesKeysItself)
        confirm();
}

void STQComboBox::lookForItem(const QVariant& value)
{
    const int index = indexOf(value);
    const QComboBox* box = comboBox();
    // The box has no view before one is asked for: then no row is hidden.
    const auto* list = compat::findChild<QListView>(box);
    if (list && list->model() == box->model() && list->isRowHidden(index))
        proxy::raiseNotYet(proxy::hiddenItem(value.toString()), unreachedItemMessage, value.toString());
    if (!(box->model()->index(index, box->modelColumn(), box->rootModelIndex()).flags() & Qt::ItemIsEnabled))
        proxy::raiseNotYet(proxy::disabledItem(value.toString()), disabledItemMessage, value.toString());
}

int STQComboBox::indexOf(const QVariant& value)
{
    const int type = compat::typeOf(value);
    if (type != QMetaType::QString && type != QMetaType::Int)
        typeError("string, integer");
    if (type == QMetaType::QString) {
        const int index = itemTexts(*comboBox()).indexOf(value.toString());
        if (index < 0)
            proxy::raiseNotYet(proxy::missingItem(value.toString()), unknownItemMessage, value.toString());
        return index;
    }
    const int index = value.toInt();
    if (index < 0 || index >= comboBox()->count())
        proxy::raiseNotYet(proxy::missingItem(index), invalidIndexMessage, index);
    return index;
}

void STQComboBox::clickText()
{
    clickInto(comboBox()->lineEdit()->geometry());
}

// Both halves of the click are posted before either is handled, so that the release reaches the combo box as well. Over
// the open list Qt takes a release for a choice once the double click interval is over, and a list may open as slowly.
void STQComboBox::clickForList()
{
    mouseMove(globalCenter(comboBox()->rect()), Qt::NoModifier);
    const PostingScope postingOnly(*this);
    clickInto(comboBox()->rect());
}

void STQComboBox::move(int current, int index)
{
    // Without a current item the list starts at the first one, hence no step more.
    const int steps = current == -1 ? index : index - current;
    for (int i = 0; i < qAbs(steps); ++i)
        keyClick(steps < 0 ? Qt::Key_Up : Qt::Key_Down, Qt::NoModifier);
}

int STQComboBox::rowNow(const QWidget* popup)
{
    return currentRow(comboBox(), popup);
}

// The current item of an editable combo box whose text was edited gets its own text by being left and reached again.
// Returns whether no key is needed, or one has left it.
bool STQComboBox::leaveEditedItem(int index)
{
    const QComboBox* box = comboBox();
    if (!box->isEditable() || box->currentIndex() != index || box->currentText() == box->itemText(index))
        return true;
    keyClick(Qt::Key_Down, Qt::NoModifier);
    if (rowNow(nullptr) == index)
        keyClick(Qt::Key_Up, Qt::NoModifier);
    return rowNow(nullptr) != index;
}

bool STQComboBox::walkTo(int index, const QPointer<QWidget>& popup)
{
    const int maximumTurns = 2; // past the item: where a list begins without a current one, or the mouse has moved it
    syncEvents();
    if (!popup && !leaveEditedItem(index))
        return false;
    int lastKey = 0;
    for (int turns = 0, before = rowNow(popup); before != index;) {
        const int key = before < index ? Qt::Key_Down : Qt::Key_Up;
        turns += lastKey != 0 && key != lastKey ? 1 : 0;
        lastKey = key;
        keyClick(key, Qt::NoModifier);
        const int now = rowNow(popup);
        if (now == before || turns > maximumTurns)
            return false;
        before = now;
    }
    return true;
}

void STQComboBox::enter(const QVariant& value)
{
    if (compat::typeOf(value) != QMetaType::QString)
        typeError("string");
    if (!comboBox()->isEditable() || !comboBox()->lineEdit())
        proxy::raiseError(readOnlyMessage);
    clickText();
    const QLineEdit* edit = comboBox()->lineEdit();
    if (edit && !edit->text().isEmpty())
        clearField();
    typeText(value.toString());
    stopProcessingEvents();
}

QStringList STQComboBox::pseudoPropertyNames()
{
    return proxy::namesOf(pseudoProperties);
}

QVariant STQComboBox::pseudoProperty(const char* name, const QVariant&)
{
    return proxy::valueOf(pseudoProperties, name, *comboBox());
}

QComboBox* STQComboBox::comboBox()
{
    return static_cast<QComboBox*>(checkedWidget("QComboBox"));
}
