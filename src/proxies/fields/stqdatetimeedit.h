#pragma once

#include "proxies/entryfield.h"

class QDateTimeEdit;

// Date and time edits. The value is a string in the widget's display format. It goes through the system
// clipboard, since what is typed goes to one section only; what the clipboard held before is lost.
class STQDateTimeEdit : public proxies::EntryField
{
public:
    // Pastes the value and confirms it with Return. `option` is ignored. Raises an error when the widget is
    // read only, and when it ends up with another text.
    void activate(const QVariant& value, const QVariant& option) override;
    // The same without Return.
    void enter(const QVariant& value) override;

private:
    QDateTimeEdit* dateTimeEdit();
    void paste(const QVariant& value, const char* operation);
};
