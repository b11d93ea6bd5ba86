#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

// One request line: a command number and sections, separated by commas.
class Request
{
public:
    // The line's bytes, without the line end, are Latin-1.
    explicit Request(const QByteArray& line);

    // The whole line.
    const QString& line() const { return text; }
    // A section's text; section 0 is the command number. A missing section is empty.
    QString section(int index) const { return sections.value(index); }

private:
    QString text;
    QStringList sections;
};
