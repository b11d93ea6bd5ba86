#include "bridge/cpytestproxy.h"

#include "identify/widgetlookup.h"
#include "identify/widgetpath.h"

#include <QApplication>

namespace LmSquishProxy {

namespace {

WidgetLookup failure(LookupError error)
{
    WidgetLookup lookup;
    lookup.error = error;
    return lookup;
}

WidgetLookup lookUp(const QString& windowName, const WidgetPath& path, bool checkModality)
{
    const QWidget* activeWindow = QApplication::activeWindow();
    QWidget* window = nullptr;
    const int count = findWindow(window, windowName);
    if (count != 1)
        return failure(count < 1 ? WindowNotFoundError : WindowAmbiguousError);
    const LookupError blocked = checkModality ? activityError(window, activeWindow) : NoError;
    if (blocked != NoError)
        return failure(blocked);
    if (path.lastElement() == activePopupWidget)
        return currentWidget(QApplication::activePopupWidget());
    if (path.lastElement() == focusWidget)
        return currentWidget(QApplication::focusWidget());
    return findWidget(window, path);
}

} // namespace

CPyTestProxy::CPyTestProxy(const char* objectName)
    : CSquishProxy(objectName)
{
}

QWidget* CPyTestProxy::getWidget(const QString& p_cap, const QString& p_path, bool checkModality)
{
    const WidgetLookup lookup = lookUp(p_cap, WidgetPath(p_path), checkModality);
    lastError = lookup.error;
    return lookup.error == NoError ? lookup.widget : nullptr;
}

QString CPyTestProxy::getLastPyTestError()
{
    return lookupErrorName(lastError);
}

} // namespace LmSquishProxy
