#include "proxies/entryfield.h"

#include <QWidget>

void EntryField::clickInto(const QRect& rect)
{
    mouseClick(globalCenter(rect), Qt::LeftButton, Qt::NoModifier);
    checkedWidget(nullptr);
}

void EntryField::pressKey(int key, Qt::KeyboardModifiers modifiers)
{
    keyPress(key, modifiers);
    checkedWidget(nullptr);
    keyRelease(key, modifiers);
    checkedWidget(nullptr);
}

void EntryField::pressKey(int key, Qt::KeyboardModifiers modifiers, int times)
{
    for (int i = 0; i < times; ++i)
        pressKey(key, modifiers);
}

void EntryField::selectLine()
{
    pressKey(Qt::Key_Home, Qt::NoModifier);
    pressKey(Qt::Key_End, Qt::ShiftModifier);
}

void EntryField::clearField()
{
    selectLine();
    pressKey(Qt::Key_Backspace, Qt::NoModifier);
}

void EntryField::typeIntoField(const QString& text)
{
    for (const QChar character : text) {
        keyPress(character);
        checkedWidget(nullptr);
        keyRelease(character);
        checkedWidget(nullptr);
    }
}

void EntryField::confirm()
{
    processEventsEnabled = false;
    pressKey(Qt::Key_Return, Qt::NoModifier);
}
