#pragma once

#include "locate/classmemo.h"
#include "locate/widgettexts.h"

namespace locate {

// Facts that follow from the class of a widget, or from its nearest base class that there is a row for.
struct WidgetKind
{
    const char* className;
    const char* role; // in plain words
    TextReader readTexts; // what the widget shows as its own; null where it shows none
    bool isOneText; // that is one text, and no other field of a description has it
};

// The kinds of widgets, for one walk through a window.
class WidgetKinds
{
public:
    const WidgetKind& of(const QWidget* widget) const;

private:
    mutable ClassMemo<const WidgetKind*> known;
};

// The widget's role: that of its kind, or "window" or "dialog".
const char* roleOf(const QWidget* widget, const WidgetKind& kind);

} // namespace locate
