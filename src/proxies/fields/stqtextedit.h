#pragma once

#include "proxies/entryfield.h"

class QTextEdit;

// Text edits.
class STQTextEdit : public proxies::EntryField
{
public:
    // A string replaces the text. Every character of it is typed, line feeds too; there is no Return. Raises
    // an error when the widget is read only.
    void enter(const QVariant& value) override;

private:
    QTextEdit* textEdit();
};
