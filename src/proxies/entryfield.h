#pragma once

#include "proxy/stwidgetproxy.h"

namespace proxies {

// Base of the proxies of entry fields: enters text by mouse and keys. Each key lets the application react, and its
// slots may delete the field. The keys that follow then raise "Internal error, proxy without widget" instead of
// reaching another widget.
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
