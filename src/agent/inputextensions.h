#pragma once

#include <QtCore/QByteArray>

class STApplicationProxy;

namespace agent {

class Request;

// The extensions for keys, text, the wheel, the focus and the clipboard. Section 1 is the window, section 2 a locator, empty
// for the widget that has the focus in the window. Each replies with the class of the widget, for keys of the one that has
// the focus, or with code 9 when the widget cannot take the input yet.

// Section 3: one to four key strokes, section 4: empty, "press" or "release" for half of a stroke.
QByteArray pressKeys(const Request& request, STApplicationProxy& registry);
// Section 3: the text to type at the caret.
QByteArray typeText(const Request& request, STApplicationProxy& registry);
// Section 3: "x:y:modifier:horizontal:vertical", see STWidgetProxy::wheelAction().
QByteArray turnWheel(const Request& request, STApplicationProxy& registry);
// Gives the widget the keyboard focus, as the Tab key would.
QByteArray focusWidget(const Request& request, STApplicationProxy& registry);
// Without a section, replies with the text on the clipboard, empty when there is none. With one, puts that text there.
QByteArray clipboardText(const Request& request, STApplicationProxy& registry);

} // namespace agent
