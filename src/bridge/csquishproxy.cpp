#include "bridge/csquishproxy.h"

#include "bridge/cinternalsquishproxycleanup.h"
#include "bridge/clickposition.h"
#include "bridge/dockwidgets.h"
#include "bridge/hierarchicalsearch.h"
#include "bridge/livewidget.h"
#include "bridge/trayiconsearch.h"

#include <QtCore/QEvent>

namespace LmSquishProxy {

namespace {

// How the last search ended, for all objects.
SearchError lastError = SearchError::None;

} // namespace

CSquishProxy::CSquishProxy(const char* objectName)
    : registry(&CInternalSquishProxyCleanup::instance())
{
    setObjectName(QString::fromLatin1(objectName));
    registry->add(this);
}

CSquishProxy::~CSquishProxy()
{
    if (registry)
        registry->remove(this);
}

bool CSquishProxy::event(QEvent* event)
{
    if (event->type() != QEvent::MetaCall)
        return QWidget::event(event);
    // A queued call of a slot has no caller to catch an exception; the event loop is the application's.
    try {
        return QWidget::event(event);
    } catch (...) {
        return true;
    }
}

QWidget* CSquishProxy::findWidgetByHierarchicalName(const QStringList& hierarchicalName, const QString& windowTitle,
    QWidget* pWindow, bool bOnlyVisible, bool bWildCardWindowTitle)
{
    lastError = SearchError::None;
    HierarchicalQuery query;
    query.name = hierarchicalName;
    query.windowTitle = windowTitle;
    query.window = liveWidget(pWindow);
    query.isWindowGone = pWindow && !query.window;
    query.onlyVisible = bOnlyVisible;
    query.wildcardTitle = bWildCardWindowTitle;
    const HierarchicalMatch match = findHierarchically(query);
    lastError = match.error;
    return match.widget;
}

QString CSquishProxy::getLastError()
{
    return searchErrorName(lastError);
}

QWidget* CSquishProxy::getQWidgetNullPtr()
{
    return nullptr;
}

QPoint CSquishProxy::getCheckBoxCheckClickPos(QWidget* pCheckBox)
{
    return checkBoxClickPosition(liveWidget(pCheckBox));
}

QPoint CSquishProxy::getGroupBoxCheckClickPos(QWidget* pGroupBox)
{
    return groupBoxClickPosition(liveWidget(pGroupBox));
}

QPoint CSquishProxy::getRadioButtonClickPos(QWidget* pRadioButton)
{
    return radioButtonClickPosition(liveWidget(pRadioButton));
}

QWidget* CSquishProxy::getActivatedSiblingDockWidget(QWidget* pDockWidget)
{
    return activeSiblingDockWidget(liveWidget(pDockWidget));
}

bool CSquishProxy::isDockWidgetActive(QWidget* pDockWidget)
{
    return isActiveDockWidget(liveWidget(pDockWidget));
}

QObject* CSquishProxy::findTrayIcon(const QString& strObjectName)
{
    lastError = SearchError::None;
    const TrayIconMatch match = findTrayIconByName(strObjectName);
    lastError = match.error;
    return match.icon;
}

} // namespace LmSquishProxy
