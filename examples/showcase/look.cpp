#include "look.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QStringList>
#include <QStyleFactory>

namespace {

const int iconSize = 32; // pixels, scaled down where a smaller icon is needed

template <typename Draw>
QIcon drawn(Draw draw)
{
    QPixmap pixmap(iconSize, iconSize);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    draw(painter);
    return QIcon(pixmap);
}

} // namespace

bool Look::setStyle(const QString& style)
{
    if (!style.isEmpty())
        return QApplication::setStyle(style) != nullptr;
    const QStringList styles = QStyleFactory::keys();
    for (const char* name : {"Fusion", "Cleanlooks"}) {
        if (styles.contains(QLatin1String(name)))
            return QApplication::setStyle(QLatin1String(name)) != nullptr;
    }
    return true; // whatever Qt has chosen
}

void Look::setColors(QApplication& application)
{
    const QColor text(0x3b, 0x2a, 0x1e);
    const QColor faded(0xae, 0x9d, 0x8a);
    QPalette palette(QColor(0xea, 0xdf, 0xce), QColor(0xf6, 0xf0, 0xe7));
    palette.setColor(QPalette::Base, QColor(0xff, 0xfd, 0xf9));
    palette.setColor(QPalette::AlternateBase, QColor(0xf8, 0xf1, 0xe6));
    palette.setColor(QPalette::Highlight, QColor(0x8c, 0x5a, 0x2e));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, faded);
    }
    QApplication::setPalette(palette);
    application.setWindowIcon(bean());
}

QIcon Look::bean(const QColor& color)
{
    return drawn([&color](QPainter& painter) {
        painter.translate(iconSize / 2, iconSize / 2);
        painter.rotate(35);
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.drawEllipse(QRectF(-9.5, -13.5, 19, 27));
        painter.setPen(QPen(color.lighter(190), 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawArc(QRectF(-8, -13, 10, 14), -90 * 16, 160 * 16);
        painter.drawArc(QRectF(-2, 0, 10, 13), 90 * 16, 160 * 16);
    });
}

QIcon Look::cup()
{
    return drawn([](QPainter& painter) {
        const QColor china(0x8c, 0x5a, 0x2e);
        painter.setPen(QPen(china, 3));
        painter.drawEllipse(QRectF(20, 12, 8, 9));
        painter.setPen(Qt::NoPen);
        painter.setBrush(china);
        painter.drawRoundedRect(QRectF(4, 9, 20, 16), 4, 4);
        painter.drawRoundedRect(QRectF(2, 27, 25, 3), 1, 1);
        painter.setPen(QPen(china.lighter(150), 2));
        painter.drawLine(QPointF(10, 2), QPointF(10, 6));
        painter.drawLine(QPointF(17, 2), QPointF(17, 6));
    });
}

QIcon Look::stop()
{
    return drawn([](QPainter& painter) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0xb0, 0x3a, 0x2e));
        painter.drawRoundedRect(QRectF(5, 5, 22, 22), 4, 4);
    });
}
