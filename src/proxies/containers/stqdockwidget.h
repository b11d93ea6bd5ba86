#pragma once

#include "proxy/stwidgetproxy.h"

class QDockWidget;

// Dock widgets.
class STQDockWidget : public STWidgetProxy
{
public:
    // No value: brings a dock widget that shares its place with others to the front, by a click on the first
    // tab of the main window that has its title. Any other dock widget stays as it is, silently. `option` is
    // ignored.
    void activate(const QVariant& value, const QVariant& option) override;
    // That tab.
    MousePlace activationPlace() override;

private:
    QDockWidget* dockWidget();
};
