#pragma once

#include "bridge/hierarchicalsearch.h"

class QObject;

namespace LmSquishProxy {

struct TrayIconMatch
{
    QObject* icon = nullptr;
    SearchError error = SearchError::None; // None, WidgetAmbiguous or WidgetNotFound
};

// Finds the one tray icon with this object name below the application object or a top-level widget.
TrayIconMatch findTrayIconByName(const QString& objectName);

} // namespace LmSquishProxy
