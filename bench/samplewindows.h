#pragma once

#include <QtCore/QString>

class QWidget;

// Windows of many widgets to search in. They count as visible but are not put onto the screen, so that nothing is
// painted.
enum class Sample {
    Named, // push buttons "button0", ... in groups "group0", ... of 100
    Nested, // "leaf" at the end of chains "chain0", ... of ten levels
    Twins, // widgets that all have the name "twin"
    Unnamed, // push buttons without a name, with the texts "Choose &item 0...", ...
    Fields, // labels "Field &0:", ... and after each of them the line edit that is its buddy, with the hint "hint 0", ...
    Actions, // tool buttons without a name, each with an action "action0", ...
};

// The window with that many widgets below it; its title is "Sample". Made once, and kept until the process ends; the
// others are hidden.
QWidget& sampleWindow(Sample sample, int size);
