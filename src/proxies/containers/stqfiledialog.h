#pragma once

#include "proxies/entryfield.h"

class QLineEdit;

// Qt's own file dialogs, not those of the operating system.
class STQFileDialog : public proxies::EntryField
{
public:
    // A string, the path of a file: replaces what is in the file name field by it and presses Return.
    // `option` is ignored.
    void activate(const QVariant& value, const QVariant& option) override;

private:
    QLineEdit* fileNameEdit();
    void forgetSelection();
};
