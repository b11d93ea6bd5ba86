#include "requestmutator.h"

#include "commands/tokens.h"

#include <QtCore/QList>

#include <cstring>

extern "C" std::size_t LLVMFuzzerMutate(uint8_t* data, std::size_t size, std::size_t maximumSize);

namespace {

const int maximumLines = 8;
const int firstValueSection = 4;

// The commands that there is an extension of, which finds the widget by a locator.
bool canBeLocated(const QByteArray& number)
{
    return number.size() == 1 && std::strchr("245679", number.at(0));
}

// Commands 5, 6 and 9 have their values in hexadecimal digits, extensions all sections.
bool isEncoded(const QList<QByteArray>& sections, int section)
{
    const QByteArray& number = sections.first();
    if (number.startsWith('+'))
        return section > 0;
    return section >= firstValueSection && (number == "5" || number == "6" || number == "9");
}

} // namespace

int RequestMutator::below(int limit)
{
    return static_cast<int>(random() % static_cast<unsigned>(limit));
}

QByteArray RequestMutator::oneOf(const QList<QByteArray>& words)
{
    return words.at(below(static_cast<int>(words.size())));
}

QByteArray RequestMutator::token(const QByteArray& number, int section)
{
    const int path = 2;
    if (!number.startsWith('+'))
        return oneOf(tokens::ofSection(section));
    if (section == path && below(2) == 0)
        return "path=" + oneOf(tokens::ofSection(path));
    return oneOf(tokens::ofExtensionSection(number, section));
}

// The request for a widget at a path, as one for a widget that a locator finds. Sections are not encoded yet.
void RequestMutator::locate(QList<QByteArray>& sections)
{
    sections.first().prepend('+');
    if (sections.size() > 2 && !sections.at(2).isEmpty())
        sections[2].prepend("path=");
    const int last = sections.first() == "+5" ? 6 : 5;
    while (sections.size() <= last)
        sections.append(QByteArray());
    if (below(4) == 0)
        sections[last] = "force";
}

QByteArray RequestMutator::mutatedBytes(const QByteArray& bytes)
{
    const int growth = 16;
    QByteArray buffer = bytes;
    buffer.resize(bytes.size() + growth);
    const std::size_t size = LLVMFuzzerMutate(reinterpret_cast<uint8_t*>(buffer.data()),
        static_cast<std::size_t>(bytes.size()), static_cast<std::size_t>(buffer.size()));
    return buffer.left(static_cast<int>(size));
}

QByteArray RequestMutator::newLine()
{
    QList<QByteArray> sections = oneOf(tokens::requests()).split(',');
    if (canBeLocated(sections.first()) && below(3) == 0)
        locate(sections);
    for (int i = 0; i < sections.size(); ++i) {
        if (isEncoded(sections, i))
            sections[i] = sections.at(i).toHex();
    }
    return sections.join(',');
}

QByteArray RequestMutator::mutatedLine(const QByteArray& line)
{
    // Values and paths matter most.
    const int chances[] = {0, 1, 2, 2, 2, 3, 4, 4, 4, 4, 4, 5};
    const int chosen = chances[below(sizeof chances / sizeof *chances)];
    QList<QByteArray> sections = line.split(',');
    while (sections.size() <= chosen)
        sections.append(QByteArray());
    QByteArray& section = sections[chosen];
    const bool encoded = isEncoded(sections, chosen);
    const QByteArray old = encoded ? QByteArray::fromHex(section) : section;
    const QByteArray changed = below(2) == 0 ? mutatedBytes(old) : token(sections.first(), chosen);
    section = encoded ? changed.toHex() : changed;
    return sections.join(',');
}

QByteArray RequestMutator::mutated(const QByteArray& input)
{
    QList<QByteArray> lines = input.split('\n');
    const int chosen = below(static_cast<int>(lines.size()));
    enum { ChangeBytes, Insert, Remove, Duplicate, Shuffle, Change };
    switch (below(10)) {
    case ChangeBytes:
        return mutatedBytes(input);
    case Insert:
        lines.insert(chosen, newLine());
        break;
    case Remove:
        lines.removeAt(chosen);
        break;
    case Duplicate:
        lines.insert(chosen, QByteArray(lines.at(chosen)));
        break;
    case Shuffle:
        lines.move(chosen, below(static_cast<int>(lines.size())));
        break;
    default:
        lines[chosen] = mutatedLine(lines.at(chosen));
    }
    return QList<QByteArray>(lines.mid(0, maximumLines)).join('\n');
}
