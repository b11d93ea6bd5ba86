// Finding a widget by its path, in windows of growing size. The floor is one findChildren() for the same object name.

#include "identify/widgetlookup.h"
#include "identify/widgetpath.h"
#include "pairs.h"
#include "samplewindows.h"

#include <QAction>
#include <QInputDialog>
#include <QPushButton>
#include <QToolButton>

namespace {

// Asks Qt what must be known of each widget where an object name alone does not tell.
using AskQt = void (*)(const QWidget& window);

void askTexts(const QWidget& window)
{
    const QList<QPushButton*> buttons = window.findChildren<QPushButton*>();
    for (const QPushButton* button : buttons) {
        benchmark::DoNotOptimize(button->objectName());
        benchmark::DoNotOptimize(button->text());
    }
}

void askActions(const QWidget& window)
{
    const QList<QToolButton*> buttons = window.findChildren<QToolButton*>();
    for (const QToolButton* button : buttons) {
        benchmark::DoNotOptimize(button->objectName());
        benchmark::DoNotOptimize(button->actions().first()->objectName());
    }
}

void askParents(const QWidget& window)
{
    const QList<QWidget*> widgets = window.findChildren<QWidget*>();
    for (const QWidget* widget : widgets) {
        benchmark::DoNotOptimize(widget->objectName());
        benchmark::DoNotOptimize(qobject_cast<QInputDialog*>(widget->parent()));
    }
}

struct Row
{
    const char* benchmark;
    Sample sample;
    const char* path; // %1: the last number there is, widgetsPerNumber and all
    int widgetsPerNumber;
    identify::LookupError outcome;
    AskQt askQt;
};

const Row rows[] = {
    {"find_name", Sample::Named, "button%1", 0, identify::NoError, nullptr},
    {"find_nothing", Sample::Named, "none", 0, identify::WidgetNotFoundError, nullptr},
    {"find_parent_path", Sample::Named, "group0/button9", 0, identify::NoError, nullptr},
    {"find_deep_path", Sample::Nested, "window/chain%1//level8/leaf", 10, identify::NoError, nullptr},
    {"find_ambiguous", Sample::Nested, "leaf", 10, identify::WidgetAmbiguousError, nullptr},
    {"find_twins", Sample::Twins, "twin", 0, identify::WidgetAmbiguousError, nullptr},
    {"find_unnamed", Sample::Unnamed, "unnamed", 0, identify::WidgetNotFoundError, askTexts},
    {"find_dialog_button", Sample::Unnamed, "ChooseItem%1..._dialog_button", 0, identify::NoError, askTexts},
    {"find_action_button", Sample::Actions, "action%1_action_button", 0, identify::NoError, askActions},
    {"find_dialog_part", Sample::Unnamed, "QLineEdit__widget__", 0, identify::WidgetNotFoundError, askParents},
};

int lastNumber(const Row& row, int size)
{
    const int groupSize = 100;
    return row.widgetsPerNumber ? size / row.widgetsPerNumber - 1 : size - size / groupSize - 1;
}

QString pathIn(const Row& row, int size)
{
    const QString path = QString::fromLatin1(row.path);
    return path.contains(QLatin1String("%1")) ? path.arg(lastNumber(row, size)) : path;
}

Measured makeOurs(const Row& row, int size)
{
    QWidget& window = sampleWindow(row.sample, size);
    const QString path = pathIn(row, size);
    const identify::LookupError outcome = row.outcome;
    return [&window, path, outcome] {
        if (identify::findWidget(&window, identify::WidgetPath(path)).error != outcome)
            qFatal("%s has another outcome", qPrintable(path));
    };
}

Measured makeFloor(const Row& row, int size)
{
    const QWidget& window = sampleWindow(row.sample, size);
    const identify::WidgetPath path(pathIn(row, size));
    return [&window, path] {
        benchmark::DoNotOptimize(window.findChildren<QWidget*>(identify::searchName(path.lastElement())));
    };
}

MakeMeasured qtPart(const Row& row)
{
    if (!row.askQt)
        return MakeMeasured();
    return [&row](int size) -> Measured {
        const Measured floor = makeFloor(row, size);
        const QWidget& window = sampleWindow(row.sample, size);
        const AskQt askQt = row.askQt;
        return [floor, &window, askQt] {
            floor();
            askQt(window);
        };
    };
}

} // namespace

void registerResolution()
{
    for (const Row& row : rows) {
        registerPair(
            row.benchmark, Clock::Processor, GROWING_SIZES, [&row](int size) { return makeOurs(row, size); },
            [&row](int size) { return makeFloor(row, size); }, qtPart(row));
    }
}
