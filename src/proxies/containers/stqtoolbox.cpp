#include "proxies/containers/stqtoolbox.h"

#include "compat/children.h"
#include "compat/variant.h"
#include "proxy/pseudoproperties.h"

#include <QAbstractButton>
#include <QToolBox>

#include <algorithm>

namespace {

const char notFoundMessage[] = "activate, ToolBoxButton not found";
const char disabledMessage[] = "activate, ToolBoxButton is disabled";

// Object name that Qt gives the header of each page.
const QLatin1String headerName("qt_toolbox_toolboxbutton");

QStringList itemTexts(const QToolBox& box)
{
    QStringList texts;
    for (int i = 0; i < box.count(); ++i)
        texts.append(box.itemText(i));
    return texts;
}

const proxy::PseudoProperty<const QToolBox&> pseudoProperties[] = {
    {"itemList", [](const QToolBox& box) -> QVariant { return itemTexts(box); }},
    {"currentText", [](const QToolBox& box) -> QVariant { return box.itemText(box.currentIndex()); }},
};

} // namespace

void STQToolBox::activate(const QVariant& value, const QVariant&)
{
    const QAbstractButton* button = enabledHeader(value);
    clickCenter(button, button->rect());
}

void STQToolBox::lookForItem(const QVariant& value)
{
    enabledHeader(value);
}

QAbstractButton* STQToolBox::enabledHeader(const QVariant& value)
{
    QAbstractButton* button = header(value);
    if (!button->isEnabled())
        proxy::raiseNotYet(proxy::disabledItem(value.toString()), disabledMessage);
    return button;
}

STWidgetProxy::ItemArea STQToolBox::showItem(const QVariant& item)
{
    QAbstractButton* button = header(item);
    return {button, button->rect(), button->isEnabled()};
}

STWidgetProxy::ItemState STQToolBox::itemState(const QVariant& item)
{
    const QAbstractButton* button = header(item);
    const auto* box = static_cast<const QToolBox*>(checkedWidget("QToolBox"));
    QStringList states;
    if (!button->isEnabled())
        states.append(QLatin1String("disabled"));
    if (box->itemText(box->currentIndex()) == button->text())
        states.append(QLatin1String("selected"));
    return {button->text(), states};
}

QAbstractButton* STQToolBox::header(const QVariant& value)
{
    if (compat::typeOf(value) != QMetaType::QString)
        typeError("string");
    const QString text = value.toString();
    const QList<QAbstractButton*> headers
        = compat::findChildren<QAbstractButton>(checkedWidget("QToolBox"), headerName);
    const auto found = std::find_if(headers.begin(), headers.end(),
        [&text](const QAbstractButton* button) { return button->isVisible() && button->text() == text; });
    if (found == headers.end())
        proxy::raiseNotYet(proxy::missingItem(text), notFoundMessage);
    return *found;
}

QStringList STQToolBox::pseudoPropertyNames()
{
    return proxy::namesOf(pseudoProperties);
}

QVariant STQToolBox::pseudoProperty(const char* name, const QVariant&)
{
    return proxy::valueOf(pseudoProperties, name, *static_cast<const QToolBox*>(checkedWidget("QToolBox")));
}
