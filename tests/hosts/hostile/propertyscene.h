#pragma once

#include "stage.h"

#include <QWidget>

// A widget whose property getters run the application's code.
class PropertyTrap : public QWidget
{
    Q_OBJECT
    Q_ENUMS(Mood)
    Q_PROPERTY(int dialog READ dialog)
    Q_PROPERTY(int loop READ loop)
    Q_PROPERTY(int deadly READ deadly)
    Q_PROPERTY(Mood deadlyMood READ deadlyMood)
    Q_PROPERTY(QString windowless READ windowless)
    Q_PROPERTY(int thrower READ thrower)
    Q_PROPERTY(QString text READ text)

public:
    enum Mood { Good, Bad };

    explicit PropertyTrap(Stage& wantedStage);
    int dialog() const;
    int loop() const;
    int deadly() const;
    Mood deadlyMood() const;
    QString windowless() const;
    int thrower() const { throw 1; }
    QString text() const { return QString(5000, QLatin1Char('%')); }

private:
    Stage& stage;
};
