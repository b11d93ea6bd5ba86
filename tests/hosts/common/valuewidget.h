#pragma once

#include <QWidget>

// A widget with a property of each type that a property can have.
class ValueWidget : public QWidget
{
    Q_OBJECT
    Q_ENUMS(Level)
    Q_FLAGS(Options)
    Q_PROPERTY(Level level READ level)
    Q_PROPERTY(Options options READ options)
    Q_PROPERTY(Qt::Alignment alignment READ alignment)
    Q_PROPERTY(Qt::Orientation orientation READ orientation)
    Q_PROPERTY(int thrower READ thrower)

public:
    enum Level { Low, High = 7 };
    enum Option { First = 1, Second = 2, Third = 4 };
    Q_DECLARE_FLAGS(Options, Option)

    // Sets the values as dynamic properties, "aBool" and so on.
    ValueWidget();

    Level level() const { return High; }
    Options options() const { return Options(First) | Third; }
    Qt::Alignment alignment() const { return Qt::AlignRight | Qt::AlignTop; }
    Qt::Orientation orientation() const { return Qt::Vertical; }
    int thrower() const { throw 1; }
};
