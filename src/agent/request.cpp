#include "agent/request.h"

#include "agent/wiretext.h"
#include "proxy/sterror.h"

namespace agent {

QByteArray Request::section(int index) const
{
    const char separator = ',';
    int begin = 0;
    for (; index > 0; --index) {
        begin = static_cast<int>(bytes.indexOf(separator, begin)) + 1;
        if (begin == 0)
            return QByteArray();
    }
    const int end = static_cast<int>(bytes.indexOf(separator, begin));
    return QByteArray::fromRawData(bytes.constData() + begin, (end < 0 ? static_cast<int>(bytes.size()) : end) - begin);
}

QString Request::text(int index) const
{
    const QByteArray latin1 = section(index);
    return QString::fromLatin1(
        latin1.constData(), static_cast<int>(latin1.size())); // with the size: a NUL is a character
}

QString Request::utf8Text(int index) const
{
    bool ok = false;
    const QString decoded = decodeUtf8Hex(section(index), &ok);
    if (!ok)
        proxy::raiseError("Section %d is not hexadecimal", index);
    return decoded;
}

} // namespace agent
