#include "options.h"

#include <cstdio>

namespace {

bool takeGeometry(Options& options, const QString& value)
{
    int width = 0, height = 0, x = 0, y = 0, end = 0;
    const QByteArray text = value.toLatin1();
    const int found = std::sscanf(text.constData(), "%dx%d%n%d%d%n", &width, &height, &end, &x, &y, &end);
    options.geometry = QRect(x, y, width, height);
    options.placed = found == 4;
    return (found == 2 || found == 4) && end == text.size() && width > 0 && height > 0;
}

struct OptionRow
{
    const char* name;
    const char* value; // how the help calls it, or null where the option has none
    const char* help;
    bool (*take)(Options& options, const QString& value); // false where the value is no good
};

const OptionRow rows[] = {
    {"--help", nullptr, "Shows this text and exits.",
        [](Options& options, const QString&) { return options.help = true; }},
    {"--style", "NAME", "Draws the widgets in this style, such as Fusion or Windows.",
        [](Options& options, const QString& value) { return !(options.style = value).isEmpty(); }},
    {"--rtl", nullptr, "Lays the windows out from right to left.",
        [](Options& options, const QString&) { return options.rightToLeft = true; }},
    {"--geometry", "WxH+X+Y", "The size of the main window, and its position where +X+Y is given.", &takeGeometry},
    {"--page", "TITLE", "Starts with this page: Buttons, Entry fields, Lists, Tables, Containers or Dialogs.",
        [](Options& options, const QString& value) { return !(options.page = value).isEmpty(); }},
    {"--journal", "FILE", "Appends every line of the journal to this file as well.",
        [](Options& options, const QString& value) { return !(options.journal = value).isEmpty(); }},
    {"--tray", nullptr, "Shows the tray icon even where no system tray is found.",
        [](Options& options, const QString&) { return options.tray = true; }},
};

/// The row for \a argument, which is "--name" or "--name=value", with one dash as with two, as Qt's own
/// options are read; null where it is none of ours.
const OptionRow* findRow(const QString& argument)
{
    const QString name = argument.section(QLatin1Char('='), 0, 0);
    for (const OptionRow& row : rows) {
        if (name == QLatin1String(row.name) || name == QLatin1String(row.name + 1))
            return &row;
    }
    return nullptr;
}

} // namespace

Options Options::fromArguments(int argumentCount, char** arguments)
{
    Options options;
    options.remaining.push_back(arguments[0]);
    for (int index = 1; index < argumentCount && options.error.isEmpty(); ++index) {
        const QString argument = QString::fromLocal8Bit(arguments[index]);
        const OptionRow* row = findRow(argument);
        if (!row) {
            options.remaining.push_back(arguments[index]);
            continue;
        }
        QString value = argument.section(QLatin1Char('='), 1);
        if (row->value && value.isEmpty() && index + 1 < argumentCount)
            value = QString::fromLocal8Bit(arguments[++index]);
        if ((row->value == nullptr && !value.isEmpty()) || !row->take(options, value))
            options.error = QLatin1String(row->name) + QLatin1String(": wrong or missing value: ") + value;
    }
    options.remaining.push_back(nullptr);
    return options;
}

QString Options::helpText()
{
    QString text = QLatin1String("Usage: showcase [OPTION]...\n\n"
                                 "A coffee roastery that shows the widgets of Qt, for tests to try themselves on.\n\n");
    for (const OptionRow& row : rows) {
        QString option = QLatin1String(row.name);
        if (row.value)
            option += QLatin1Char(' ') + QLatin1String(row.value);
        text += QLatin1String("  ") + option.leftJustified(22) + QLatin1String(row.help) + QLatin1Char('\n');
    }
    return text + QLatin1String("\nOptions of Qt itself, such as -platform, are understood too.\n");
}
