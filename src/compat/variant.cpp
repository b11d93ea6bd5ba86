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
#include <cstring>
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
// Only an enumeration that the application registered arrives as anything but int. Qt 4 does not know how large its type
// is: the property itself writes as many bytes as it has.
QVariant withoutEnumType(QVariant value, const QObject* object, const QMetaProperty& property)
{
    if (value.userType() < QMetaType::User || !property.isEnumType())
        return value;
    int number[4] = {}; // room for the largest underlying type
    QVariant other;
    int status = -1;
    void* arguments[] = {number, &other, &status};
    QMetaObject::metacall(const_cast<QObject*>(object), QMetaObject::ReadProperty, property.propertyIndex(), arguments);
    return number[0];
}
#else
QVariant withoutEnumType(QVariant value, const QObject*, const QMetaProperty&)
{
    if (typeOf(value) < QMetaType::User)
        return value;
    const QMetaType type(typeOf(value));
    if (!(type.flags() & QMetaType::IsEnumeration))
        return value;
    // A type smaller than an int fills part of one, as in Qt 4.8.
    int number = 0;
    std::memcpy(&number, value.constData(), qMin(sizeof number, static_cast<std::size_t>(type.sizeOf())));
    return number;
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
    const QMetaObject* metaObject = object->metaObject();
    const int index = metaObject->indexOfProperty(name);
    return index >= 0 ? readProperty(object, metaObject->property(index))
                      : withoutEnumType(object->property(name), object, QMetaProperty());
}

QVariant readProperty(const QObject* object, const QMetaProperty& property)
{
    // Qt prints a warning where it is asked for a value whose type it does not know, and returns none.
    if (property.userType() == 0)
        return QVariant();
    return withoutEnumType(property.read(object), object, property);
}

bool isTextProperty(const QMetaProperty& property)
{
    return property.isReadable() && property.userType() == QMetaType::QString;
}

QString readTextProperty(const QObject* object, int index)
{
    QString text;
    QVariant other;
    int status = -1;
    void* arguments[] = {&text, &other, &status};
    QMetaObject::metacall(const_cast<QObject*>(object), QMetaObject::ReadProperty, index, arguments);
    // The class may deliver a variant, or the address of its own text, instead; QMetaProperty::read() handles that, too.
    return status != -1 ? textOf(other) : arguments[0] ? *static_cast<const QString*>(arguments[0]) : QString();
}

int toInt(const QString& text, bool* ok)
{
    const int maximumLength = 64;
    if (text.size() <= maximumLength)
        return text.toInt(ok, 10);
    const QChar* begin = text.constData();
    const QChar* end = begin + text.size();
    while (begin < end && begin->isSpace())
        ++begin;
    while (begin < end && (end - 1)->isSpace())
        --end;
    QString number;
    if (begin < end && (*begin == QLatin1Char('-') || *begin == QLatin1Char('+')))
        number += *begin++;
    // One of several leading zeros is kept: the number is the same, and what follows still has to be a digit.
    while (begin + 1 < end && begin[0] == QLatin1Char('0') && begin[1] == QLatin1Char('0'))
        ++begin;
    if (end - begin <= maximumLength)
        number += QString(begin, static_cast<int>(end - begin));
    return number.toInt(ok, 10);
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
    *ok = *ok && !(std::fabs(number) > FLT_MAX); // NaN is ok
    return *ok ? static_cast<float>(number) : 0.0F;
}

QString textOf(const QVariant& value)
{
    switch (typeOf(value)) {
    case QMetaType::Float:
        return QString::number(value.toFloat(), 'g', FLT_DIG);
    case QMetaType::Double:
        return QString::number(value.toDouble(), 'g', DBL_DIG);
#if QT_VERSION >= 0x050000
    case QMetaType::QByteArray:
        return QString::fromLatin1(value.toByteArray().constData()); // up to a NUL
#endif
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
