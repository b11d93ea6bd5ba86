#pragma once

#include "proxy/stwidgetproxy.h"

// What the proxies of entry fields share: the ways in which a user's mouse and keys get a text into a field.
// Every key lets the application react, and its slots may delete the field. Each of these operations then
// raises "Internal error, proxy without widget" at once, so that what is left of a text never reaches another
// widget.
class EntryField : public STWidgetProxy
{
protected:
    // A left click into the middle of a rectangle of the bound widget.
    void clickInto(const QRect& rect);
    void pressKey(int key, Qt::KeyboardModifiers modifiers);
    void pressKey(int key, Qt::KeyboardModifiers modifiers, int times);
    // Selects all of the line that has the cursor.
    void selectLine();
    // Deletes the text of a field of one line.
    void clearField();
    void typeIntoField(const QString& text);
    // Return. The application handles it when the command is over: it may open a dialog that does not end
    // before.
    void confirm();
};
