#include "proxies/stqgroupbox.h"

#include "compat/variant.h"

#include <QGroupBox>
#include <QStyle>
#include <QStyleOptionGroupBox>

namespace {

const char notCheckableMessage[] = "activate, QGroupBox is not checkable";

} // namespace

void STQGroupBox::activate(const QVariant& value, const QVariant&)
{
    if (compat::typeOf(value) != QMetaType::Bool)
        typeError("bool");
    const auto* box = static_cast<QGroupBox*>(checkedWidget("QGroupBox"));
    if (!box->isCheckable())
        raiseError(notCheckableMessage);
    if (box->isChecked() == value.toBool())
        return;
    QStyleOptionGroupBox option;
    option.initFrom(box);
    const QPoint point
        = globalCenter(box->style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxCheckBox, box));
    processEventsEnabled = false;
    mouseClick(point, Qt::LeftButton, Qt::NoModifier);
}
