#include "compat/variant.h"

#include <QtCore/QDateTime>
#include <QtCore/QLocale>
#include <QtCore/QMetaProperty>
#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtGui/QColor>
#include <QtGui/QFont>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <iterator>

namespace compat {

namespace {

#if QT_VERSION >= 0x060000
// Qt 6 counts font weights from 1 to 1000; these are its names' values on the scale of 0 to 99.
int legacyWeight(const QFont& font)
{
    struct Row
    {
        int weight;
        int legacy;
    };
    static const Row rows[] = {{QFont::Thin, 0}, {QFont::ExtraLight, 12}, {QFont::Light, 25}, {QFont::Normal, 50},
        {QFont::Medium, 57}, {QFont::DemiBold, 63}, {QFont::Bold, 75}, {QFont::ExtraBold, 81}, {QFont::Black, 87}};
    const auto distance = [&font](const Row& row) { return qAbs(row.weight - int(font.weight())); };
    return std::min_element(std::begin(rows), std::end(rows), [&](const Row& a, const Row& b) {
        return distance(a) < distance(b);
    })->legacy;
}
#else
int legacyWeight(const QFont& font)
{
    return font.weight();
}
#endif

QString fontText(const QFont& font)
{
    // Qt 6 no longer has raw mode; Qt 4 writes 0 unless the font was set up for it, which nobody does.
    return (QStringList() << font.family() << QString::number(font.pointSizeF()) << QString::number(font.pixelSize())
                          << QString::number(font.styleHint()) << QString::number(legacyWeight(font))
                          << QString::number(font.style()) << QString::number(font.underline())
                          << QString::number(font.strikeOut()) << QString::number(font.fixedPitch())
                          << QString::number(0))
        .join(QLatin1String(","));
}

#if QT_VERSION < 0x050000
QVariant withoutEnumType(const QVariant& value, const QObject* object, const char* name)
{
    // Only types that the application registered itself arrive as anything but int.
    if (value.userType() < QMetaType::User)
        return value;
    const QMetaObject* metaObject = object->metaObject();
    const QMetaProperty property = metaObject->property(metaObject->indexOfProperty(name));
    return property.isEnumType() ? QVariant(*static_cast<const int*>(value.constData())) : value;
}
#else
QVariant withoutEnumType(const QVariant& value, const QObject*, const char*)
{
    const bool isEnumeration = QMetaType(typeOf(value)).flags() & QMetaType::IsEnumeration;
    return isEnumeration ? QVariant(value.toInt()) : value;
}
#endif

} // namespace

int typeOf(const QVariant& value)
{
#if QT_VERSION >= 0x060000
    return value.typeId();
#else
    return value.userType();
#endif
}

QVariant readProperty(const QObject* object, const char* name)
{
    return withoutEnumType(object->property(name), object, name);
}

float toFloat(const QString& text, bool* ok)
{
    double number = 0;
#if QT_VERSION >= 0x050000
    QLocale locale;
    locale.setNumberOptions(QLocale::RejectGroupSeparator);
    number = locale.toDouble(text, ok);
    if (!*ok)
        number = text.toDouble(ok);
#else
    number = text.toDouble(ok);
#endif
    *ok = *ok && !(std::fabs(number) > FLT_MAX); // what is no number is ok
    return *ok ? static_cast<float>(number) : 0.0F;
}

QString textOf(const QVariant& value)
{
    switch (typeOf(value)) {
    case QMetaType::Double:
        return QString::number(value.toDouble(), 'g', DBL_DIG);
    case QMetaType::QTime:
        return value.toTime().toString(Qt::ISODate);
    case QMetaType::QDateTime:
        return value.toDateTime().toString(Qt::ISODate);
    case QMetaType::QColor:
        return value.value<QColor>().name();
    case QMetaType::QFont:
        return fontText(value.value<QFont>());
    default:
        return value.toString();
    }
}

} // namespace compat
