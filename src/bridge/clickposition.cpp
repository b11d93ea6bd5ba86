#include "bridge/clickposition.h"

#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionGroupBox>
#include <QWidget>

namespace LmSquishProxy {

namespace {

const QPoint noPosition(-1, -1);

// The edges are inclusive, and the division truncates toward zero; QRect::center() does not.
QPoint centerOf(const QRect& rect)
{
    return QPoint((rect.left() + rect.right()) / 2, (rect.top() + rect.bottom()) / 2);
}

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
    return centerOf(checkBox->style()->subElementRect(QStyle::SE_CheckBoxClickRect, &option, checkBox));
}

QPoint groupBoxClickPosition(const QWidget* groupBox)
{
    if (!isOfClass(groupBox, "QGroupBox"))
        return noPosition;
    QStyleOptionGroupBox option;
    option.initFrom(groupBox);
    return centerOf(
        groupBox->style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxCheckBox, groupBox));
}

QPoint radioButtonClickPosition(const QWidget* radioButton)
{
    if (!isOfClass(radioButton, "QRadioButton"))
        return noPosition;
    // A group box's option, on purpose: without a button's text the style answers with the indicator.
    QStyleOptionGroupBox option;
    option.initFrom(radioButton);
    return centerOf(radioButton->style()->subElementRect(QStyle::SE_RadioButtonClickRect, &option, radioButton));
}

} // namespace LmSquishProxy
