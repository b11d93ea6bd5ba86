#include "bridge/cpytestproxy.h"

#include "identify/widgetlookup.h"
#include "identify/widgetpath.h"

#include <QApplication>

namespace LmSquishProxy {

namespace {

identify::WidgetLookup failure(identify::LookupError error)
{
    identify::WidgetLookup lookup;
    lookup.error = error;
    return lookup;
}

identify::WidgetLookup lookUp(const QString& windowName, const identify::WidgetPath& path, bool checkModality)
{
    const QWidget* activeWindow = QApplication::activeWindow();
    QWidget* window = nullptr;
    const int count = identify::findWindow(window, windowName);
    if (count != 1)
        return failure(count < 1 ? identify::WindowNotFoundError : identify::WindowAmbiguousError);
    const identify::LookupError blocked
        = checkModality ? identify::activityError(window, activeWindow) : identify::NoError;
    if (blocked != identify::NoError)
        return failure(blocked);
    if (path.lastElement() == identify::activePopupWidget)
        return identify::currentWidget(QApplication::activePopupWidget());
    if (path.lastElement() == identify::focusWidget)
        return identify::currentWidget(QApplication::focusWidget());
    return identify::findWidget(window, path);
}

} // namespace

CPyTestProxy::CPyTestProxy(const char* objectName)
    : CSquishProxy(objectName)
{
}

QWidget* CPyTestProxy::getWidget(const QString& p_cap, const QString& p_path, bool checkModality)
{
    const identify::WidgetLookup lookup = lookUp(p_cap, identify::WidgetPath(p_path), checkModality);
    lastError = lookup.error;
    return lookup.error == identify::NoError ? lookup.widget : nullptr;
}

QString CPyTestProxy::getLastPyTestError()
{
    return identify::lookupErrorName(lastError);
}

} // namespace LmSquishProxy
