#pragma once

#include "locate/shown.h"

class QAction;
class QToolButton;
class QWidget;

namespace locate {

// The texts by which a user or a developer knows a widget. Readers pass them on as the application has them: most are not
// the one that is looked for, so that turning each into what is shown would cost more than the search.

// Takes texts one by one.
class TextVisitor
{
public:
    virtual ~TextVisitor() = default;
    // True: this one is enough.
    virtual bool visit(const QString& text, Markup markup) = 0;
};

// Reads one kind of texts of a widget: passes them to the visitor until one is enough. True when one was.
using TextReader = bool (*)(const QWidget* widget, TextVisitor& visitor);

// The text that an entry field shows as long as it is empty.
bool readPlaceholder(const QWidget* widget, TextVisitor& visitor);
bool readToolTip(const QWidget* widget, TextVisitor& visitor);
bool readAccessibleName(const QWidget* widget, TextVisitor& visitor);
// The title of a window, of one in an MDI area, of a dock widget or a group box, or of the tab or the button that shows
// the widget as a page.
bool readTitle(const QWidget* widget, TextVisitor& visitor);
// The object name and the text of a tool button's default action, or of the only one that it has.
bool readAction(const QWidget* widget, TextVisitor& visitor);

// The first of the texts as it is shown; empty when there is none.
QString firstShownText(const QWidget* widget, TextReader reader);

} // namespace locate
