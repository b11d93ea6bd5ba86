#include "proxies/entryfield.h"

#include <QWidget>

namespace proxies {

void EntryField::clickInto(const QRect& rect)
{
    mouseClick(globalCenter(rect), Qt::LeftButton, Qt::NoModifier);
    dedicateKeysTo(checkedWidget(nullptr), KeyScope::Focus);
}

void EntryField::selectLine()
{
    keyClick(Qt::Key_Home, Qt::NoModifier);
    keyClick(Qt::Key_End, Qt::ShiftModifier);
}

void EntryField::clearField()
{
    selectLine();
    keyClick(Qt::Key_Backspace, Qt::NoModifier);
}

} // namespace proxies
