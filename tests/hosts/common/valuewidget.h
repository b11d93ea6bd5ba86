#pragma once

#include <QWidget>
#include <QtCore/QMetaType>

// A type that nothing but this header knows of.
struct Unregistered
{
    int number = 0;
};

// A widget with a property of each type that a property can have.
class ValueWidget : public QWidget
{
    Q_OBJECT
    Q_ENUMS(Level Small Short)
    Q_FLAGS(Options)
    Q_PROPERTY(Level level READ level)
    Q_PROPERTY(Small small READ small)
    Q_PROPERTY(Short aShort READ aShort)
    Q_PROPERTY(Options options READ options)
    Q_PROPERTY(Qt::Alignment alignment READ alignment)
    Q_PROPERTY(Qt::Orientation orientation READ orientation)
    Q_PROPERTY(Unregistered unregistered READ unregistered)
    Q_PROPERTY(int thrower READ thrower)

public:
    enum Level { Low, High = 7 };
    // Registered, and of one byte and of two. (The moc of Qt 4 does not read "enum Small : unsigned char".)
    enum Small { Tiny = 200 } __attribute__((packed));
    enum Short { Middle = 50000 } __attribute__((packed));
    enum Option { First = 1, Second = 2, Third = 4 };
    Q_DECLARE_FLAGS(Options, Option)

    // Sets the values as dynamic properties, "aBool" and so on.
    ValueWidget();

    Level level() const { return High; }
    Small small() const { return Tiny; }
    Short aShort() const { return Middle; }
    Options options() const { return Options(First) | Third; }
    Qt::Alignment alignment() const { return Qt::AlignRight | Qt::AlignTop; }
    Qt::Orientation orientation() const { return Qt::Vertical; }
    Unregistered unregistered() const { return Unregistered(); }
    int thrower() const { throw 1; }

private:
    void addData();
    void addGraphics();
};

Q_DECLARE_METATYPE(ValueWidget::Small)
Q_DECLARE_METATYPE(ValueWidget::Short)
