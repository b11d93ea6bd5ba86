#include "record/eventkinds.h"

namespace record {

namespace {

const KindRow kindRows[] = {
    {QEvent::MouseButtonPress, Family::Input, "press"},
    {QEvent::MouseButtonRelease, Family::Input, "release"},
    {QEvent::MouseButtonDblClick, Family::Input, "double click"},
    {QEvent::Wheel, Family::Input, "wheel"},
    {QEvent::KeyPress, Family::Input, "key"},
    {QEvent::KeyRelease, Family::KeyRelease, ""},
    {QEvent::InputMethod, Family::Input, "text"},
    {QEvent::FocusIn, Family::Input, "focus"},
    {QEvent::Drop, Family::Input, "drop"},
    {QEvent::ContextMenu, Family::Input, "context menu"},
    {QEvent::Close, Family::Close, "close"},
    {QEvent::Shortcut, Family::Shortcut, "shortcut"},
    {QEvent::Show, Family::Window, "shown"},
    {QEvent::Hide, Family::Window, "closed"},
    {QEvent::ChildRemoved, Family::Structure, ""},
    {QEvent::WindowTitleChange, Family::Structure, ""},
};

} // namespace

const KindRow* rowOf(QEvent::Type type)
{
    for (const KindRow& row : kindRows) {
        if (type == row.type)
            return &row;
    }
    return nullptr;
}

bool isInputKind(const QByteArray& kind)
{
    return kind == "press" || kind == "double click" || kind == "wheel" || kind == "key" || kind == "text"
        || kind == "shortcut" || kind == "drop" || kind == "context menu";
}

bool isKeyKind(const QByteArray& kind)
{
    return kind == "key" || kind == "text";
}

} // namespace record
