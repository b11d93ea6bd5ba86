#pragma once

#include "proxies/entryfield.h"

// Spin boxes, of integers and of doubles. The value is an integer or a string (a double as the box shows it);
// what the box makes of it is not checked.
class STQSpinBox : public proxies::EntryField
{
public:
    // Types the value and confirms it with Return. `option` is ignored.
    void activate(const QVariant& value, const QVariant& option) override;
    // Types the value without confirming it.
    void enter(const QVariant& value) override;
};
