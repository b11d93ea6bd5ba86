#include "agent/wirevalue.h"

#include "compat/variant.h"
#include "compat/widgets.h"

#include <QIcon>
#include <QPixmap>
#include <QtCore/QBuffer>
#include <QtCore/QRect>
#include <QtCore/QStringList>

namespace agent {

namespace {

QByteArray boolReply(const QVariant& value)
{
    return value.toBool() ? "0,b:true" : "0,b:false";
}

QByteArray integerReply(const QVariant& value)
{
    return "0,i:" + value.toString().toLatin1();
}

QByteArray textReply(const QVariant& value)
{
    return "0,u:" + compat::textOf(value).toUtf8().toHex();
}

QByteArray listReply(const QVariant& value)
{
    QByteArray reply("0,l:");
    const QStringList items = value.toStringList();
    for (const QString& item : items)
        reply += '\f' + item.toLatin1();
    return reply;
}

QByteArray rectReply(const QVariant& value)
{
    return replyForRect(value.toRect());
}

QByteArray xpmReply(const QPixmap& pixmap)
{
    QByteArray xpm;
    QBuffer buffer(&xpm);
    buffer.open(QIODevice::WriteOnly);
    pixmap.save(&buffer, "XPM");
    return "0,x:" + xpm.toHex();
}

QByteArray pixmapReply(const QVariant& value)
{
    return xpmReply(value.value<QPixmap>());
}

QByteArray iconReply(const QVariant& value)
{
    return xpmReply(compat::pixmapOf(value.value<QIcon>(), QSize(64, 64)));
}

QByteArray unsupportedReply(const QVariant&)
{
    return "8,Property type not supported";
}

struct TypeRow
{
    int type;
    QByteArray (*reply)(const QVariant& value);
};

const TypeRow typeRows[] = {
    {QMetaType::Bool, boolReply},
    {QMetaType::Int, integerReply},
    {QMetaType::UInt, integerReply},
    {QMetaType::Double, textReply},
    {QMetaType::QString, textReply},
    {QMetaType::QDate, textReply},
    {QMetaType::QTime, textReply},
    {QMetaType::QDateTime, textReply},
    {QMetaType::QSize, textReply},
    {QMetaType::QPoint, textReply},
    {QMetaType::QFont, textReply},
    {QMetaType::QColor, textReply},
    {QMetaType::QStringList, listReply},
    {QMetaType::QRect, rectReply},
    {QMetaType::QPixmap, pixmapReply},
    {QMetaType::QIcon, iconReply},
    {QMetaType::QVariantMap, unsupportedReply},
    {QMetaType::QVariantList, unsupportedReply},
    {QMetaType::QByteArray, unsupportedReply},
    {QMetaType::QBitArray, unsupportedReply},
    {QMetaType::QBrush, unsupportedReply},
    {QMetaType::QPalette, unsupportedReply},
    {QMetaType::QImage, unsupportedReply},
    {QMetaType::QRegion, unsupportedReply},
    {QMetaType::QBitmap, unsupportedReply},
    {QMetaType::QCursor, unsupportedReply},
    {QMetaType::QSizePolicy, unsupportedReply},
    {QMetaType::QKeySequence, unsupportedReply},
};

} // namespace

QVariant stringFromText(const QString& text)
{
    return text.startsWith(QLatin1String("s:")) ? QVariant(text.mid(2)) : QVariant();
}

QVariant valueFromText(const QString& text)
{
    if (text == QLatin1String("b:true"))
        return true;
    if (text == QLatin1String("b:false"))
        return false;
    if (text.startsWith(QLatin1String("i:"))) {
        bool ok = false;
        const int number = compat::toInt(text.mid(2), &ok);
        return ok ? QVariant(number) : QVariant();
    }
    return stringFromText(text);
}

QByteArray replyForValue(const QVariant& value)
{
    if (!value.isValid())
        return unsupportedReply(value);
    for (const TypeRow& row : typeRows) {
        if (row.type == compat::typeOf(value))
            return row.reply(value);
    }
    return "8,Unknown property type";
}

QByteArray replyForRect(const QRect& rect)
{
    return QString::fromLatin1("0,r:%1,%2,%3,%4")
        .arg(rect.left())
        .arg(rect.top())
        .arg(rect.right())
        .arg(rect.bottom())
        .toLatin1();
}

} // namespace agent
