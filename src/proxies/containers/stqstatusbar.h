#pragma once

#include "proxy/stwidgetproxy.h"

// Status bars: there is nothing to activate, only a message to read.
class STQStatusBar : public STWidgetProxy
{
public:
    // "currentMessage": the temporary message, empty when none is shown.
    QStringList pseudoPropertyNames() override;
    QVariant pseudoProperty(const char* name, const QVariant& argument) override;
};
