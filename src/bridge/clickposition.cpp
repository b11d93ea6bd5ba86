#include "bridge/clickposition.h"

#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionGroupBox>
#include <QWidget>

namespace LmSquishProxy {

namespace {

const QPoint noPosition(-1, -1);

bool isOfClass(const QWidget* widget, const char* className)
{
    return widget && widget->inherits(className);
}

} // namespace

QPoint checkBoxClickPosition(const QWidget* checkBox)
{
    if (!isOfClass(checkBox, "QCheckBox"))
        return noPosition;
    QStyleOptionButton option;
    option.initFrom(checkBox);
    return checkBox->style()->subElementRect(QStyle::SE_CheckBoxClickRect, &option, checkBox).center();
}

QPoint groupBoxClickPosition(const QWidget* groupBox)
{
    if (!isOfClass(groupBox, "QGroupBox"))
        return noPosition;
    QStyleOptionGroupBox option;
    option.initFrom(groupBox);
    return groupBox->style()
        ->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxCheckBox, groupBox)
        .center();
}

QPoint radioButtonClickPosition(const QWidget* radioButton)
{
    if (!isOfClass(radioButton, "QRadioButton"))
        return noPosition;
    // A group box's option, since it has no button text: then the style answers with the indicator alone.
    QStyleOptionGroupBox option;
    option.initFrom(radioButton);
    return radioButton->style()->subElementRect(QStyle::SE_RadioButtonClickRect, &option, radioButton).center();
}

} // namespace LmSquishProxy
