// Finding a widget by a locator, in windows of growing size. The floor is one findChildren() of all widgets.

#include "locate/search.h"
#include "pairs.h"
#include "samplewindows.h"

namespace {

struct Row
{
    const char* benchmark;
    Sample sample;
    const char* locator;
    locate::Outcome outcome;
};

const Row rows[] = {
    {"locate_class_text", Sample::Unnamed, "QPushButton text=\"Choose item 7...\"", locate::Outcome::One},
    {"locate_text", Sample::Unnamed, "text=\"Choose item 7...\"", locate::Outcome::One},
    {"locate_name", Sample::Named, "name=button7", locate::Outcome::One},
    {"locate_within", Sample::Named, "name=group0 >> QPushButton nth=7", locate::Outcome::One},
    {"locate_action", Sample::Actions, "QToolButton action=action7", locate::Outcome::One},
    {"locate_label", Sample::Fields, "label=\"Field 7:\"", locate::Outcome::One},
    {"locate_property", Sample::Fields, "QLineEdit .placeholderText=\"hint 7\"", locate::Outcome::One},
};

Measured makeOurs(const Row& row, int size)
{
    QWidget& window = sampleWindow(row.sample, size);
    return [&window, &row] {
        if (locate::search(&window, locate::parseLocator(QLatin1String(row.locator))).outcome != row.outcome)
            qFatal("%s has another outcome", row.locator);
    };
}

Measured makeFloor(const Row& row, int size)
{
    const QWidget& window = sampleWindow(row.sample, size);
    return [&window] { benchmark::DoNotOptimize(window.findChildren<QWidget*>()); };
}

} // namespace

void registerLocating()
{
    for (const Row& row : rows)
        registerPair(
            row.benchmark, Clock::Processor, {100, 1000, 5000}, [&row](int size) { return makeOurs(row, size); },
            [&row](int size) { return makeFloor(row, size); });
}
