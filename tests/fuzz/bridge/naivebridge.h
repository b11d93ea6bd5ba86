#pragma once

#include "describedtree.h"

// The rules of the script bridge once more, slow and obvious, to compare its own with. They are read off the description
// of the widgets, without a look at these.
namespace naive {

// The arguments of findWidgetByHierarchicalName().
struct Search
{
    QStringList name; // a null element is a wildcard
    QString title; // null: any
    int window = -1; // the only one to be searched; -1: all
    bool isWindowGone = false;
    bool onlyVisible = true;
    bool hasPatternTitle = false;
    bool hasProvider = false;
};

struct Outcome
{
    int number = -1; // of what is found; -1: nothing
    QString error;
};

Outcome findHierarchically(const std::vector<Described>& all, const Search& search);
Outcome findTrayIcon(const std::vector<Described>& all, const QString& name);

} // namespace naive
