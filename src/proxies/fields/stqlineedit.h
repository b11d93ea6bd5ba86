#pragma once

#include "proxies/entryfield.h"

class QLineEdit;

// Line edits.
class STQLineEdit : public proxies::EntryField
{
public:
    // A string replaces the text; a line feed at its end stands for Return afterwards. It is typed, or
    // inserted whole where an input mask or a validator might not let its beginnings pass. Raises an error
    // when the field is read only, and when a field with a mask or a validator ends up with another text.
    void enter(const QVariant& value) override;

private:
    QLineEdit* lineEdit();
    void insertWhole(const QString& text);
};
