#include "proxy/keystroke.h"

#include "compat/systeminput.h"
#include "proxy/sterror.h"

namespace proxy {

const ModifierKey modifierKeys[] = {
    {"Shift", Qt::ShiftModifier, Qt::Key_Shift},
    {"Ctrl", Qt::ControlModifier, Qt::Key_Control},
    {"Alt", Qt::AltModifier, Qt::Key_Alt},
    {"Meta", Qt::MetaModifier, Qt::Key_Meta},
    {"Num", Qt::KeypadModifier, 0},
};

namespace {

const std::size_t maximumStrokes = 4; // as a QKeySequence has
const int maximumNameLength = 32;

const QLatin1Char strokeSeparator(',');
const QLatin1Char keySeparator('+');

// The named keys for which keyboards send a character.
struct CharacterKey
{
    ushort character;
    int key;
};

const CharacterKey characterKeys[] = {
    {'\r', Qt::Key_Return},
    {'\r', Qt::Key_Enter},
    {'\t', Qt::Key_Tab},
    {'\b', Qt::Key_Backspace},
    {'\x1b', Qt::Key_Escape},
    {'\x7f', Qt::Key_Delete},
};

QString textOfCode(uint code)
{
    if (!QChar::requiresSurrogates(code))
        return QString(QChar(static_cast<ushort>(code)));
    return QString(QChar(QChar::highSurrogate(code))) + QChar(QChar::lowSurrogate(code));
}

// The code of the one character that the text is; 0 when it is more or less.
uint singleCode(const QString& text)
{
    if (text.size() == 1)
        return text.at(0).unicode();
    const bool isPair = text.size() == 2 && text.at(0).isHighSurrogate() && text.at(1).isLowSurrogate();
    return isPair ? QChar::surrogateToUcs4(text.at(0), text.at(1)) : 0;
}

// Qt's key codes are those of upper-case letters; letters of Latin-1 without an upper case in Latin-1 have their own.
int keyOfCode(uint code)
{
    const uint upper = QChar::toUpper(code);
    return static_cast<int>(code <= 0xff && upper > 0xff ? code : upper);
}

// The character that X11 makes of this one while Ctrl is held.
ushort controlCharacter(ushort character)
{
    if ((character >= '@' && character < '\x7f') || character == ' ')
        return character & 0x1f;
    if (character == '2')
        return 0;
    if (character >= '3' && character <= '7')
        return static_cast<ushort>(character - '3' + '\x1b');
    if (character == '8')
        return '\x7f';
    return character == '/' ? '_' & 0x1f : character;
}

QString textOfKey(int key)
{
    for (const CharacterKey& row : characterKeys) {
        if (row.key == key)
            return QString(QChar(row.character));
    }
    return key < Qt::Key_Escape ? textOfCode(QChar::toLower(static_cast<uint>(key))) : QString();
}

// Null when there is none.
const ModifierKey* modifierNamed(const QString& name)
{
    for (const ModifierKey& row : modifierKeys) {
        if (name.compare(QLatin1String(row.name), Qt::CaseInsensitive) == 0)
            return &row;
    }
    return nullptr;
}

// Removes the modifiers from the beginning of a stroke's text.
Qt::KeyboardModifiers takeModifiers(QString& stroke)
{
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    for (;;) {
        const int end = static_cast<int>(stroke.left(maximumNameLength).indexOf(keySeparator));
        const bool isKey = end < 1 || end == stroke.size() - 1;
        const ModifierKey* row = isKey ? nullptr : modifierNamed(stroke.left(end));
        if (!row)
            return modifiers;
        modifiers |= row->modifier;
        stroke.remove(0, end + 1);
    }
}

int keyOfName(const QString& name)
{
    if (const uint code = singleCode(name))
        return keyOfCode(code);
    if (const ModifierKey* row = modifierNamed(name))
        return row->key;
    return name.size() > maximumNameLength || name.contains(keySeparator) ? 0 : compat::keyNamed(name);
}

KeyStroke strokeOf(const QString& text)
{
    KeyStroke stroke;
    QString name = text;
    stroke.modifiers = takeModifiers(name);
    stroke.key = keyOfName(name);
    if (stroke.key == 0)
        raiseError("Unknown key \"%s\"", name);
    stroke.text = textOfKey(stroke.key);
    if (stroke.key == Qt::Key_Tab && stroke.modifiers & Qt::ShiftModifier)
        stroke.key = Qt::Key_Backtab; // which has no text
    if (stroke.key == Qt::Key_Backtab) {
        stroke.modifiers |= Qt::ShiftModifier;
        stroke.text.clear();
    }
    return stroke;
}

// The text of the stroke at the position, which is moved behind the comma that ends it. The comma can be the key, too.
QString takeStrokeText(const QString& keys, int& position)
{
    while (position < keys.size() && keys.at(position).isSpace())
        ++position;
    int end = static_cast<int>(keys.indexOf(strokeSeparator, position));
    const bool isAfterModifier
        = end > position + 1 && keys.at(end - 1) == keySeparator && keys.at(end - 2) != keySeparator;
    const bool isKey = end == position || isAfterModifier;
    if (isKey)
        end = static_cast<int>(keys.indexOf(strokeSeparator, end + 1));
    const QString text = keys.mid(position, end < 0 ? -1 : end - position).trimmed();
    position = end < 0 ? static_cast<int>(keys.size()) + 1 : end + 1;
    return text;
}

} // namespace

Qt::KeyboardModifiers modifierOf(int key)
{
    for (const ModifierKey& row : modifierKeys) {
        if (row.key && row.key == key)
            return row.modifier;
    }
    return Qt::NoModifier;
}

QString KeyStroke::textWith(Qt::KeyboardModifiers held) const
{
    const QString shown = held & Qt::ShiftModifier ? text.toUpper() : text;
    // A single letter can have several of upper case.
    const QString typed = shown.size() == text.size() ? shown : text;
    const bool isControlled = held & Qt::ControlModifier && typed.size() == 1;
    return isControlled ? QString(QChar(controlCharacter(typed.at(0).unicode()))) : typed;
}

std::vector<KeyStroke> keyStrokes(const QString& keys)
{
    std::vector<KeyStroke> strokes;
    for (int position = 0; position <= keys.size();) {
        if (strokes.size() == maximumStrokes)
            raiseError("At most %d key strokes are pressed at a time", static_cast<int>(maximumStrokes));
        strokes.push_back(strokeOf(takeStrokeText(keys, position)));
    }
    return strokes;
}

KeyStroke takeKeyStroke(const QString& text, int& position)
{
    KeyStroke stroke;
    const QChar first = text.at(position++);
    const QChar second = position < text.size() ? text.at(position) : QChar();
    if (first == QLatin1Char('\n') || first == QLatin1Char('\r')) {
        if (first == QLatin1Char('\r') && second == QLatin1Char('\n'))
            ++position;
        stroke.key = Qt::Key_Return;
        stroke.text = QLatin1String("\r");
        return stroke;
    }
    uint code = first.unicode();
    if (first.isHighSurrogate() && second.isLowSurrogate()) {
        code = QChar::surrogateToUcs4(first, second);
        ++position;
    }
    stroke.text = textOfCode(code);
    for (const CharacterKey& row : characterKeys) {
        if (row.character == code) {
            stroke.key = row.key;
            return stroke;
        }
    }
    if (QChar::category(code) == QChar::Other_Control)
        return stroke;
    stroke.key = keyOfCode(code);
    if (QChar::toLower(code) != code)
        stroke.modifiers = Qt::ShiftModifier;
    return stroke;
}

} // namespace proxy
