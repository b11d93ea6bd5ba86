#include "proxies/buttons/stqbutton.h"

#include "compat/variant.h"
#include "proxies/clickcommand.h"
#include "proxy/pseudoproperties.h"

#include <QAbstractButton>
#include <QStyle>
#include <QStyleOptionToolButton>
#include <QToolButton>

namespace {

const char notToggleMessage[] = "Button is not a togglebutton";

QRect subElementRect(const QWidget* widget, QStyle::SubElement element)
{
    QStyleOptionButton option;
    option.initFrom(widget);
    return widget->style()->subElementRect(element, &option, widget);
}

QRect subControlRect(const QToolButton* button, QStyle::SubControl control)
{
    QStyleOptionToolButton option;
    option.initFrom(button);
    if (button->popupMode() == QToolButton::MenuButtonPopup) {
        option.features |= QStyleOptionToolButton::MenuButtonPopup;
        option.subControls |= QStyle::SC_ToolButtonMenu;
    }
    return button->style()->subControlRect(QStyle::CC_ToolButton, &option, control, button);
}

const proxy::PseudoProperty<const QAbstractButton&> pseudoProperties[] = {
    {"text", [](const QAbstractButton& button) -> QVariant { return STWidgetProxy::stripMnemonic(button.text()); }},
};

} // namespace

void STQButton::activate(const QVariant& value, const QVariant&)
{
    const bool toggles = compat::typeOf(value) == QMetaType::Bool;
    if (!toggles && value.isValid())
        typeError("bool, none");
    const auto* button = static_cast<QAbstractButton*>(checkedWidget("QAbstractButton"));
    if (toggles && !button->isCheckable())
        proxy::raiseError(notToggleMessage);
    const QPoint point = clickPoint(ToolButtonPart::Body);
    if (toggles && button->isChecked() == value.toBool())
        return;
    finalClick(point);
}

void STQButton::mouseAction(const QVariant& command)
{
    if (compat::typeOf(command) != QMetaType::QString)
        typeError("string");
    const QString text = command.toString();
    const bool left = text.endsWith(QLatin1String("LeftButton:::"));
    const QPoint point = clickPoint(left ? ToolButtonPart::MenuArrow : ToolButtonPart::Whole);
    stopProcessingEvents();
    const proxies::ClickCommand click = proxies::clickCommand(text, ":::");
    playMouse(click.type, point, click.button, Qt::NoModifier);
}

QPoint STQButton::clickPoint(ToolButtonPart part)
{
    const auto* button = static_cast<QAbstractButton*>(checkedWidget("QAbstractButton"));
    if (button->inherits("QCheckBox"))
        return globalCenter(subElementRect(button, QStyle::SE_CheckBoxClickRect));
    if (button->inherits("QRadioButton"))
        return globalCenter(subElementRect(button, QStyle::SE_RadioButtonClickRect));
    if (button->inherits("QToolButton") && part != ToolButtonPart::Whole) {
        const QRect rect = subControlRect(static_cast<const QToolButton*>(button),
            part == ToolButtonPart::Body ? QStyle::SC_ToolButton : QStyle::SC_ToolButtonMenu);
        if (part == ToolButtonPart::Body || rect.isValid())
            return globalCenter(rect);
    }
    return globalCenter(button->rect());
}

QStringList STQButton::pseudoPropertyNames()
{
    return proxy::namesOf(pseudoProperties);
}

QVariant STQButton::pseudoProperty(const char* name, const QVariant&)
{
    return proxy::valueOf(
        pseudoProperties, name, *static_cast<const QAbstractButton*>(checkedWidget("QAbstractButton")));
}
