#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace agent {

// One request line: a command number and sections, separated by commas. A section is cut when it is asked for: a line
// can hold millions of them, of which a command reads six at most.
class Request
{
public:
    // The line's bytes, without the line end, are Latin-1.
    explicit Request(const QByteArray& line)
        : bytes(line)
    {
    }

    // The whole line.
    const QByteArray& line() const { return bytes; }
    // A section; section 0 is the command number. A missing section is empty. These are the line's own bytes, and not to be
    // kept longer than the request.
    QByteArray section(int index) const;
    // The same as a text.
    QString text(int index) const;
    // Whether the line has that section, though it may be empty.
    bool has(int index) const { return bytes.count(',') >= index; }
    // The text of an extension's section: UTF-8 in hexadecimal. Raises an error for a section that is no such text.
    QString utf8Text(int index) const;

private:
    QByteArray bytes;
};

} // namespace agent
