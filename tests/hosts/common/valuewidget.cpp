#include "valuewidget.h"

#include <QBitArray>
#include <QBitmap>
#include <QBrush>
#include <QColor>
#include <QCursor>
#include <QDateTime>
#include <QFont>
#include <QIcon>
#include <QImage>
#include <QKeySequence>
#include <QPainterPath>
#include <QPolygon>
#include <QRegion>
#include <QStringList>
#include <QUrl>
#include <QVariant>

namespace {

QPixmap checkered()
{
    QImage image(2, 2, QImage::Format_RGB32);
    image.fill(0xffff0000);
    image.setPixel(1, 1, 0xff0000ff);
    return QPixmap::fromImage(image);
}

} // namespace

ValueWidget::ValueWidget()
{
    qRegisterMetaType<Small>("ValueWidget::Small");
    qRegisterMetaType<Short>("ValueWidget::Short");
    addData();
    addGraphics();
}

void ValueWidget::addData()
{
    const QDate date(2024, 2, 29);
    const QTime time(13, 5, 9, 250);
    setProperty("aBool", true);
    setProperty("anotherBool", false);
    setProperty("anInt", -5);
    setProperty("aUInt", 4000000000u);
    setProperty("aDouble", 0.1 + 0.2);
    setProperty("aString", QString(QChar(0x20ac)) + QLatin1String(", 1\n"));
    setProperty("anEmptyString", QString());
    setProperty("aDate", date);
    setProperty("aTime", time);
    setProperty("aDateTime", QDateTime(date, time));
    setProperty("aStringList", QStringList() << QLatin1String("one, two") << QString(QChar(0xe9)) << QString());
    setProperty("anEmptyStringList", QStringList());
    setProperty("aMap", QVariantMap());
    setProperty("aList", QVariantList());
    setProperty("aByteArray", QByteArray("bytes"));
    setProperty("aBitArray", QBitArray(3));
    setProperty("aLongLong", qlonglong(1));
    setProperty("aULongLong", qulonglong(1));
    setProperty("aChar", QChar(65));
    setProperty("aUrl", QUrl(QLatin1String("http://localhost")));
}

void ValueWidget::addGraphics()
{
    QFont font(QLatin1String("DejaVu Sans"), 12, QFont::Bold);
    font.setUnderline(true);
    QPixmap large(200, 200);
    large.fill(Qt::green);
    setProperty("aSize", QSize(3, 4));
    setProperty("aPoint", QPoint(5, 6));
    setProperty("aFont", font);
    setProperty("aColor", QColor(255, 128, 0, 100));
    setProperty("aRect", QRect(10, 20, 30, 40));
    setProperty("aPixmap", checkered());
    setProperty("anIcon", QIcon(large));
    setProperty("aBrush", QBrush(Qt::red));
    setProperty("aPalette", QPalette());
    setProperty("anImage", QImage());
    setProperty("aRegion", QRegion());
    setProperty("aBitmap", QBitmap(2, 2));
    setProperty("aCursor", QCursor());
    setProperty("aSizePolicy", QSizePolicy());
    setProperty("aKeySequence", QKeySequence(Qt::Key_F1));
    setProperty("aRectF", QRectF(1, 2, 3, 4));
    setProperty("aPolygon", QPolygon());
}
