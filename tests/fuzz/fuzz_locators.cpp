// Locators. The first line of the input is one; the others name the widgets of a window, one line each (see
// names/namedwindow.h). Rules: what is a locator is one to a slow and obvious reader, too, and finds what that finds; the
// descriptions of what it finds are ASCII.

#include "fuzzing.h"
#include "locate/description.h"
#include "locate/search.h"
#include "locators/naivelocator.h"
#include "names/namedwindow.h"

#include <QWidget>

#include <algorithm>

using fuzzing::check;
using fuzzing::printable;

namespace {

// Whether it is a locator, and what it finds.
bool search(QWidget* window, const QString& text, locate::SearchResult& result)
{
    try {
        result = locate::search(window, locate::parseLocator(text));
    } catch (const locate::LocatorError& error) {
        check(error.at >= 0 && error.at <= text.size(), "the place of an error", printable(text));
        return false;
    }
    return true;
}

void checkResult(NamedWindow& host, const QString& text, const locate::SearchResult& result)
{
    bool isKnown = true;
    const QList<QWidget*> expected = naive::widgetsOf(host.window(), naive::wordsOf(text), isKnown);
    if (!isKnown)
        return;
    const QString detail = printable(text) + QLatin1Char('\n') + host.description();
    const bool isFound = result.outcome == locate::Outcome::One || result.outcome == locate::Outcome::Several;
    check(isFound == !expected.isEmpty(), "whether a locator finds something", detail);
    if (!isFound)
        return;
    check(result.count == expected.size(), "how many widgets a locator finds", detail);
    for (std::size_t i = 0; i < result.widgets.size(); ++i)
        check(result.widgets[i] == expected.at(static_cast<int>(i)), "the widgets of a locator, in order", detail);
}

void checkDescriptions(QWidget* window, const locate::SearchResult& result)
{
    const locate::WidgetDescriber describer(window);
    for (const QPointer<QWidget>& widget : result.widgets) {
        QByteArray json;
        describer.append(json, widget);
        const bool isPrintable = std::all_of(json.begin(), json.end(), [](char c) { return c >= ' ' && c < 0x7f; });
        check(isPrintable, "a description is ASCII", QString::fromLatin1(json));
    }
}

} // namespace

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    static NamedWindow host;
    const QStringList lines = fuzzing::linesOf(data, size);
    host.rename(lines.mid(1));
    const QString text = lines.first();
    locate::SearchResult result;
    const bool isLocator = search(host.window(), text, result);
    check(isLocator == !naive::wordsOf(text).isEmpty(), "whether it is a locator", printable(text));
    if (isLocator) {
        checkResult(host, text, result);
        checkDescriptions(host.window(), result);
    }
    return 0;
}
