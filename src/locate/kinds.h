#pragma once

#include "locate/classmemo.h"
#include "locate/widgettexts.h"

namespace locate {

// Facts about a widget that follow from its class, or from its nearest base class in the table.
struct WidgetKind
{
    const char* className;
    const char* role; // in plain words
    TextReader readTexts; // reads the texts that the widget itself shows; null where it shows none
    bool isOneText; // readTexts gives one text, which no other field of a description has
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
