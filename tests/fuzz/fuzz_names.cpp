// Object names, derived names, widget paths and window names. The first line of the input is a path, the second a window
// name; the others name the widgets of a window, one line each (see names/namedwindow.h). Rules: every lookup finds what a slow
// and obvious lookup finds, and every widget is found by its own full path.

#include "fuzzing.h"
#include "identify/objectname.h"
#include "identify/widgetlookup.h"
#include "identify/widgetpath.h"
#include "identify/widgettree.h"
#include "identify/windowlookup.h"
#include "names/naivelookup.h"
#include "names/namedwindow.h"

#include <QWidget>
#include <QtCore/QTextStream>

using fuzzing::check;
using fuzzing::printable;

namespace {

void checkPathLookup(NamedWindow& host, const QString& path)
{
    const identify::WidgetLookup found = identify::findWidget(host.window(), identify::WidgetPath(path));
    const identify::WidgetLookup expected = naive::findWidget(host.window(), path);
    const QString detail = printable(path) + QLatin1Char('\n') + host.description();
    check(found.error == expected.error, "the outcome of a lookup", detail);
    check(found.visibleCount == expected.visibleCount, "how many visible widgets fit", detail);
    check(found.error != identify::NoError || found.widget == expected.widget, "the widget at a path", detail);
}

void checkWindowLookup(const QString& name)
{
    QWidget* found = nullptr;
    QWidget* expected = nullptr;
    const int count = identify::findWindow(found, name);
    check(count == naive::findWindow(expected, name), "how many windows have a name", printable(name));
    check(count < 1 || found == expected, "the window of a name", printable(name));
}

// The names from the window down, however many widgets share them, lead to the widget.
void checkFullPath(NamedWindow& host, const QWidget* widget)
{
    QStringList names;
    for (const QWidget* step = widget; step != host.window(); step = step->parentWidget())
        names.prepend(identify::getName(step));
    names.prepend(identify::getName(host.window()));
    const QString path = names.join(QLatin1String("/"));
    // A name with a separator is one that no path can tell.
    check(path.count(QLatin1Char('/')) >= names.size()
            || identify::checkPath(widget, host.window(), identify::WidgetPath(path)),
        "the full path fits", printable(path));
}

void checkTree(NamedWindow& host)
{
    QString text;
    QTextStream stream(&text);
    identify::widgetTree(host.window(), 0, stream);
    stream.flush();
    int formFeeds = 1;
    for (const QWidget* widget : host.widgets())
        formFeeds += 1 + static_cast<int>(widget->objectName().count(QLatin1Char('\f')));
    formFeeds += static_cast<int>(host.window()->objectName().count(QLatin1Char('\f')));
    check(text.count(QLatin1Char('\f')) == formFeeds, "one record for each widget", printable(text));
}

} // namespace

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    static NamedWindow host;
    const QStringList lines = fuzzing::linesOf(data, size);
    host.rename(lines.mid(2));
    checkPathLookup(host, lines.first());
    checkWindowLookup(lines.value(1));
    checkTree(host);
    const QList<QWidget*> widgets = host.widgets();
    for (QWidget* widget : widgets) {
        check(identify::getName(widget) == naive::nameOf(widget), "the name of a widget", host.description());
        checkFullPath(host, widget);
    }
    // One of them is enough: to look them all up would take most of the time.
    checkPathLookup(host, identify::getName(widgets.at(static_cast<int>(size) % widgets.size())));
    return 0;
}
