#pragma once

#include "proxy/stwidgetproxy.h"

// Push, tool and radio buttons, and any other QAbstractButton.
class STQButton : public STWidgetProxy
{
public:
    // Nothing clicks once; a bool clicks a checkable button only when it is not in that state yet. `option` is ignored.
    void activate(const QVariant& value, const QVariant& option) override;
    // "MousePress:", "MouseRelease:", "MouseClick:" or "MouseDoubleClick:", then "LeftButton:::" or "RightButton:::".
    // No positions, no modifiers. A left one goes to the menu arrow of a tool button that has a separate one.
    void mouseAction(const QVariant& command) override;
    // "text": the button's text without its mnemonic's "&".
    QStringList pseudoPropertyNames() override;
    QVariant pseudoProperty(const char* name, const QVariant& argument) override;

private:
    enum class ToolButtonPart { Body, MenuArrow, Whole };

    QPoint clickPoint(ToolButtonPart part);
};
