#pragma once

#include "stage.h"

#include <QVBoxLayout>
#include <QWidget>

// All scenarios.
extern const Scene scenes[];
extern const int sceneCount;

void buildButtons(Stage& stage, QWidget* centre);
void buildEntries(Stage& stage, QWidget* centre);
void buildContainers(Stage& stage, QWidget* centre);
void buildLists(Stage& stage, QWidget* centre);
void buildTrees(Stage& stage, QWidget* centre);
void buildTables(Stage& stage, QWidget* centre);
void buildGeneric(Stage& stage, QWidget* centre);
void buildMenus(Stage& stage, QWidget* centre);
void buildDialogs(Stage& stage, QWidget* centre);
void buildProperties(Stage& stage, QWidget* centre);

// Marks a widget as the application's own to destroy and to give another parent. The parts that Qt makes for itself, such
// as the line edit of a spin box, are none: Qt uses them without looking whether they are still there.
template <class Widget>
Widget* own(Widget* widget)
{
    widget->setProperty("own", true);
    return widget;
}

// Gives a widget its object name and puts it below the others of its parent.
template <class Widget>
Widget* put(QWidget* parent, Widget* widget, const char* name)
{
    widget->setObjectName(QLatin1String(name));
    if (!parent->layout())
        new QVBoxLayout(parent);
    parent->layout()->addWidget(widget);
    return own(widget);
}

inline QString words(const char* latin1)
{
    return QLatin1String(latin1);
}
