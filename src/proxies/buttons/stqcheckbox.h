#pragma once

#include "proxies/buttons/stqbutton.h"

// Check boxes.
class STQCheckBox : public STQButton
{
public:
    // A bool: clicks the box when it is not in that state yet. `option` is ignored.
    void activate(const QVariant& value, const QVariant& option) override;
};
