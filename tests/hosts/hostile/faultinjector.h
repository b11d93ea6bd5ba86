#pragma once

#include "stage.h"

#include <QtCore/QObject>

// Does something hostile at some of the events and signals that pass by.
class FaultInjector : public QObject
{
public:
    explicit FaultInjector(Stage& wantedStage);

    // Listens to the signals of all objects below the root.
    static void connectSignals(Stage& stage, QObject* root);
    // The same for objects that come later.
    static void connectSignalsOf(Stage& stage, QObject* sender);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Stage& stage;
};
