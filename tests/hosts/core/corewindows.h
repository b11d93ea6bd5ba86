#pragma once

#include "latin1.h"

#include <QBoxLayout>
#include <QWidget>

class QPushButton;
class TestHost;

template <class Widget>
Widget* named(Widget* widget, const char* name)
{
    widget->setObjectName(latin1(name));
    return widget;
}

// Adds a widget to the layout of its parent.
template <class Widget>
Widget* add(QWidget* parent, Widget* widget)
{
    parent->layout()->addWidget(widget);
    return widget;
}

// A window with an empty vertical layout, still hidden.
QWidget* addWindow(const char* name, const char* title, const QPoint& position);

// A plain widget with an empty vertical layout.
QWidget* addFrame(QWidget* parent, const char* name);

// A button whose text is its name, and whose clicks are journalled.
QPushButton* addButton(TestHost& host, QWidget* parent, const char* name);

// A dialog with a button that opens the next dialog, and so on. Returns when it is closed.
void openDialog(TestHost& host, int level);

// Each adds windows of one theme, or the actions that show them.
void buildMainWindow(TestHost& host);
void buildNamedWindows(TestHost& host);
void buildDialogs(TestHost& host);
void buildDeadlyWindow(TestHost& host);
void buildSaver(TestHost& host);
void buildSurroundings(TestHost& host);
