#pragma once

#include "proxy/stwidgetproxy.h"

class QSlider;

// Sliders.
class STQSlider : public STWidgetProxy
{
public:
    // An integer: drags the handle to it. `option` is ignored. Raises an error when the value is out of the
    // slider's range or lies between two pixels. A vertical slider has the first pixel only: see span().
    void activate(const QVariant& value, const QVariant& option) override;
    // "MousePress:", "MouseRelease:", "MouseClick:" or "MouseDoubleClick:", then "LeftButton" or
    // "RightButton", at the handle's place at the slider's origin. No positions, no modifiers. An empty
    // command does nothing.
    void mouseAction(const QVariant& command) override;

private:
    QSlider* slider();
    QRect subControl(int control);
    int span();
    // Conversions between values and pixels, which count from the handle's place at the slider's origin.
    int pixelOf(int value);
    int valueAt(int pixel);
};
