#include "proxies/buttons/stqgroupbox.h"

#include "compat/variant.h"

#include <QGroupBox>
#include <QStyle>
#include <QStyleOptionGroupBox>

namespace {

const char notCheckableMessage[] = "activate, QGroupBox is not checkable";

// Reaches the protected function that fills in title, alignment and flatness, on which the check box's place depends.
struct StyleOptionAccess : QGroupBox
{
    static void init(const QGroupBox* box, QStyleOptionGroupBox* option)
    {
        (box->*(&StyleOptionAccess::initStyleOption))(option);
    }
};

} // namespace

void STQGroupBox::activate(const QVariant& value, const QVariant&)
{
    if (compat::typeOf(value) != QMetaType::Bool)
        typeError("bool");
    const auto* box = static_cast<QGroupBox*>(checkedWidget("QGroupBox"));
    if (!box->isCheckable())
        proxy::raiseError(notCheckableMessage);
    if (box->isChecked() == value.toBool())
        return;
    QStyleOptionGroupBox option;
    StyleOptionAccess::init(box, &option);
    clickCenter(box, box->style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxCheckBox, box));
}
