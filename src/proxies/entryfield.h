#pragma once

#include "proxy/stwidgetproxy.h"

namespace proxies {

// Used by the proxies of entry fields: the ways in which a user's mouse and keys get a text into a field.
// Each key lets the application react, and its slots may delete the field. Whatever is left to be typed then
// raises "Internal error, proxy without widget" instead of reaching another widget.
class EntryField : public STWidgetProxy
{
protected:
    // A left click into the middle of a rectangle of the bound widget. All keys afterwards are for that
    // widget.
    void clickInto(const QRect& rect);
    // Selects all of the line that has the cursor.
    void selectLine();
    // Deletes the text of a field of one line.
    void clearField();
};

} // namespace proxies
