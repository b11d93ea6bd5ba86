#pragma once

#include <QtCore/QString>

#include <vector>

class QWidget;

namespace identify {

class WidgetPath;

// A widget and its object name, which is read once however many paths it is compared with.
struct NamedWidget
{
    // Makes the name in its place: a QString of Qt 4 cannot be moved, and a copy costs as much as a comparison.
    explicit NamedWidget(const QWidget* namedWidget);

    // Whether getName() gives it that name.
    bool isNamed(const QString& name) const;

    const QWidget* widget;
    QString objectName;
};

// Whether a path fits the last widget of a line of ancestors, outermost first. The path cannot name widgets above the first.
bool pathFits(const std::vector<NamedWidget>& lineage, const WidgetPath& path);

} // namespace identify
