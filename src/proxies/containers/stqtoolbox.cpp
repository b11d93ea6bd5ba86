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
    const QAbstractButton* header = requiredHeader(value);
    clickCenter(header, header->rect());
}

void STQToolBox::lookForItem(const QVariant& value)
{
    requiredHeader(value);
}

const QAbstractButton* STQToolBox::requiredHeader(const QVariant& value)
{
    if (compat::typeOf(value) != QMetaType::QString)
        typeError("string");
    const QString text = value.toString();
    const QList<QAbstractButton*> headers
        = compat::findChildren<QAbstractButton>(checkedWidget("QToolBox"), headerName);
    const auto header = std::find_if(headers.begin(), headers.end(),
        [&text](const QAbstractButton* button) { return button->isVisible() && button->text() == text; });
    if (header == headers.end())
        proxy::raiseNotYet(proxy::missingItem(text), notFoundMessage);
    if (!(*header)->isEnabled())
        proxy::raiseNotYet(proxy::disabledItem(text), disabledMessage);
    return *header;
}

QStringList STQToolBox::pseudoPropertyNames()
{
    return proxy::namesOf(pseudoProperties);
}

QVariant STQToolBox::pseudoProperty(const char* name, const QVariant&)
{
    return proxy::valueOf(pseudoProperties, name, *static_cast<const QToolBox*>(checkedWidget("QToolBox")));
}
