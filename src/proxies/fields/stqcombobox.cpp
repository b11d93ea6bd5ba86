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
#include <QPointer>

namespace {

const char unknownItemMessage[] = "activate, QComboBox unknown item %s";
const char invalidIndexMessage[] = "activate, QComboBox invalid index %d";
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
int currentRow(const QComboBox* box, QWidget* popup)
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

void STQComboBox::lookForItem(const QVariant& value)
{
    indexOf(value);
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
