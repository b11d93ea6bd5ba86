#pragma once

#include "bridge/csquishproxy.h"
#include "identify/windowlookup.h"

namespace LmSquishProxy {

// Adds the search for widgets by window name (windowlookup.h) and widget path (widgetpath.h), with the
// outcomes that the agent's own requests have.
class CPyTestProxy : public CSquishProxy
{
    Q_OBJECT

public:
    explicit CPyTestProxy(const char* objectName);

public Q_SLOTS:
    // The one visible widget at the path below the window; null, and getLastPyTestError() says why, when
    // there is not exactly one. With checkModality, a window that a popup or a modal widget blocks does not
    // count.
    QWidget* getWidget(const QString& p_cap, const QString& p_path, bool checkModality = true);
    // How this object's last getWidget() ended: the name of a LookupError.
    QString getLastPyTestError();

private:
    identify::LookupError lastError = identify::NoError;
};

} // namespace LmSquishProxy
