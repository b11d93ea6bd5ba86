#include "agent/wirevalue.h"

#include "compat/variant.h"
#include "compat/widgets.h"

#include <QIcon>
#include <QPixmap>
#include <QtCore/QBuffer>
#include <QtCore/QRect>
#include <QtCore/QStringList>

namespace {

QString boolReply(const QVariant& value)
{
    return QLatin1String(value.toBool() ? "0,b:true" : "0,b:false");
}

QString integerReply(const QVariant& value)
{
    return QLatin1String("0,i:") + value.toString();
}

QString textReply(const QVariant& value)
{
    return QLatin1String("0,u:") + QLatin1String(compat::textOf(value).toUtf8().toHex().constData());
}

QString listReply(const QVariant& value)
{
    QString reply = QLatin1String("0,l:");
    const QStringList items = value.toStringList();
    for (const QString& item : items)
        reply += QLatin1Char('\f') + item;
    return reply;
}

QString rectReply(const QVariant& value)
{
    return replyForRect(value.toRect());
}

QString xpmReply(const QPixmap& pixmap)
{
    QByteArray xpm;
    QBuffer buffer(&xpm);
    buffer.open(QIODevice::WriteOnly);
    pixmap.save(&buffer, "XPM");
    return QLatin1String("0,x:") + QLatin1String(xpm.toHex().constData());
}

QString pixmapReply(const QVariant& value)
{
    return xpmReply(value.value<QPixmap>());
}

QString iconReply(const QVariant& value)
{
    return xpmReply(compat::pixmapOf(value.value<QIcon>(), QSize(64, 64)));
}

QString unsupportedReply(const QVariant&)
{
    return QLatin1String("8,Property type not supported");
}

struct TypeRow
{
    int type;
    QString (*reply)(const QVariant& value);
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
        const int number = text.mid(2).toInt(&ok, 10);
        return ok ? QVariant(number) : QVariant();
    }
    return stringFromText(text);
}

QString replyForValue(const QVariant& value)
{
    if (!value.isValid())
        return unsupportedReply(value);
    for (const TypeRow& row : typeRows) {
        if (row.type == compat::typeOf(value))
            return row.reply(value);
    }
    return QLatin1String("8,Unknown property type");
}

QString replyForRect(const QRect& rect)
{
    return QString::fromLatin1("0,r:%1,%2,%3,%4").arg(rect.left()).arg(rect.top()).arg(rect.right()).arg(rect.bottom());
}
