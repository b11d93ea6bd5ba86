#include "proxies/fields/spinboxeditfield.h"

#include <QStyle>
#include <QStyleOptionSpinBox>
#include <QWidget>

namespace fields {

QRect spinBoxEditField(const QWidget* spinBox)
{
    QStyleOptionSpinBox option;
    option.initFrom(spinBox);
    return spinBox->style()->subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxEditField, spinBox);
}

} // namespace fields
