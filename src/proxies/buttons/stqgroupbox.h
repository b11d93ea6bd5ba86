#pragma once

#include "proxy/stwidgetproxy.h"

// Group boxes with a check box in their title.
class STQGroupBox : public STWidgetProxy
{
public:
    // A bool: clicks the check box when it is not in that state yet. `option` is ignored.
    void activate(const QVariant& value, const QVariant& option) override;
};
