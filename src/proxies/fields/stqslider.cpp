#include "proxies/fields/stqslider.h"

#include "compat/variant.h"
#include "proxies/clickcommand.h"

#include <QSlider>
#include <QStyle>
#include <QStyleOptionSlider>

namespace {

const char unreachableMessage[] = "Unable to display value %d, try %d";

} // namespace

void STQSlider::activate(const QVariant& value, const QVariant&)
{
    if (compat::typeOf(value) != QMetaType::Int)
        typeError("integer");
    const int wanted = value.toInt();
    if (wanted < slider()->minimum() || wanted > slider()->maximum())
        rangeError("[%d, %d]", slider()->minimum(), slider()->maximum());
    const int nearest = valueAt(pixelOf(wanted));
    if (nearest != wanted)
        proxy::raiseError(unreachableMessage, wanted, nearest);
    const QPoint origin = globalCenter(subControl(QStyle::SC_SliderHandle));
    const QPoint axis = slider()->orientation() == Qt::Horizontal ? QPoint(1, 0) : QPoint(0, 1);
    mouseDrag(origin + axis * pixelOf(slider()->value()), origin + axis * pixelOf(wanted), Qt::LeftButton);
}

void STQSlider::mouseAction(const QVariant& command)
{
    if (command.isValid() && compat::typeOf(command) != QMetaType::QString)
        typeError("string, none");
    const QPoint point = globalCenter(subControl(QStyle::SC_SliderHandle));
    if (!command.isValid())
        return;
    stopProcessingEvents();
    const proxies::ClickCommand click = proxies::clickCommand(command.toString(), "");
    playMouse(click.type, point, click.button, Qt::NoModifier);
}

QRect STQSlider::subControl(int control)
{
    // The option knows neither the value nor the orientation: the positions that tests drag to are calculated from a
    // handle at the origin of a horizontal slider.
    QStyleOptionSlider option;
    option.initFrom(slider());
    return slider()->style()->subControlRect(
        QStyle::CC_Slider, &option, static_cast<QStyle::SubControl>(control), slider());
}

int STQSlider::span()
{
    const QRect groove = subControl(QStyle::SC_SliderGroove);
    const QRect handle = subControl(QStyle::SC_SliderHandle);
    if (slider()->orientation() == Qt::Horizontal)
        return (groove.right() - groove.left()) - (handle.right() - handle.left());
    // Negative, so that every value is at pixel 0: a vertical slider accepts only values that are shown there.
    return (groove.top() - groove.bottom()) - (handle.bottom() - handle.top());
}

int STQSlider::pixelOf(int value)
{
    return QStyle::sliderPositionFromValue(
        slider()->minimum(), slider()->maximum(), value, span(), slider()->invertedAppearance());
}

int STQSlider::valueAt(int pixel)
{
    return QStyle::sliderValueFromPosition(
        slider()->minimum(), slider()->maximum(), pixel, span(), slider()->invertedAppearance());
}

QSlider* STQSlider::slider()
{
    return static_cast<QSlider*>(checkedWidget("QSlider"));
}
