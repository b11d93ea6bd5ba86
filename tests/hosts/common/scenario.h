#pragma once

#include "testhost.h"

#include <QCoreApplication>
#include <QLineEdit>
#include <QStringList>
#include <QVBoxLayout>
#include <QWidget>

#include <cstddef>
#include <memory>

// A host of views runs one of its scenarios, by the option "--scenario NAME". A stage is the host and its window.
template <class Stage>
struct Scenario
{
    const char* name;
    void (*build)(Stage& stage);
};

// Builds the wanted scenario in a window with this title. A line edit has the focus at first, so that no item is
// current.
template <class Stage, std::size_t count>
void runScenario(TestHost& host, const Scenario<Stage> (&scenarios)[count], const char* title, const QSize& size)
{
    const QStringList arguments = QCoreApplication::arguments();
    const QString wanted = arguments.value(arguments.indexOf(QLatin1String("--scenario")) + 1);
    auto* window = new QWidget;
    window->setObjectName(QLatin1String("window"));
    window->setWindowTitle(QLatin1String(title));
    new QVBoxLayout(window);
    auto* other = new QLineEdit;
    other->setObjectName(QLatin1String("other"));
    window->layout()->addWidget(other);
    static std::unique_ptr<Stage> stage; // stays, because requests come later
    stage.reset(new Stage{host, window});
    for (const Scenario<Stage>& scenario : scenarios) {
        if (wanted == QLatin1String(scenario.name))
            scenario.build(*stage);
    }
    window->setGeometry(QRect(QPoint(60, 60), size));
    window->show();
}
