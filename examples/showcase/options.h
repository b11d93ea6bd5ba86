#pragma once

#include <QRect>
#include <QString>

#include <vector>

/// The options of the command line.
struct Options
{
    bool help = false;
    bool rightToLeft = false;
    bool tray = false;
    bool placed = false; ///< geometry has a position
    QString style;
    QString page;
    QString journal;
    QRect geometry;
    QString error; ///< why the command line cannot be followed, or empty
    std::vector<char*> remaining; ///< the arguments that are Qt's, and a null pointer

    static Options fromArguments(int argumentCount, char** arguments);
    static QString helpText();
};
