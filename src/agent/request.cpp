#include "agent/request.h"

Request::Request(const QByteArray& line)
    : text(QString::fromLatin1(line.constData(), line.size())) // with the size: a NUL is a character like any other
    , sections(text.split(QLatin1Char(',')))
{
}
