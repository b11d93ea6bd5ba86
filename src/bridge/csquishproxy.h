#pragma once

#include <QStringList>
#include <QWidget>
#include <QtCore/QPoint>
#include <QtCore/QPointer>

namespace LmSquishProxy {

class CInternalSquishProxyCleanup;

// Test scripts call these slots inside the application, by name, through Qt's meta-object system: the search
// for widgets by hierarchical name (hierarchicalname.h), click positions, the state of dock widgets, the
// search for tray icons. The slots' names, order and parameter names are the scripts' interface. Pointers to
// widgets that do not live any more are taken as no widget. Never shown. Lives until the application quits,
// unless it is deleted earlier; to be used in the GUI thread.
class CSquishProxy : public QWidget
{
    Q_OBJECT

public:
    // The object name is Latin-1. Needs a QApplication.
    explicit CSquishProxy(const char* objectName);
    ~CSquishProxy() override;

public Q_SLOTS:
    // The one widget with the hierarchical name, below the window or below any; null, and getLastError() says
    // why, when there is not exactly one. A null title is any title. Throws std::logic_error on an internal
    // fault only.
    QWidget* findWidgetByHierarchicalName(const QStringList& hierarchicalName, const QString& windowTitle = QString(),
        QWidget* pWindow = nullptr, bool bOnlyVisible = true, bool bWildCardWindowTitle = false);
    // How the last findWidgetByHierarchicalName() or findTrayIcon() ended, of whichever object: "NoError",
    // "WidgetAmbiguousError", "WidgetNotFoundError" or "InvalidWidgetPath".
    QString getLastError();
    // Null, with the type that scripts need to pass no widget.
    QWidget* getQWidgetNullPtr();
    // Where a click toggles the widget, in its own coordinates; (-1, -1) when it is of another class.
    QPoint getCheckBoxCheckClickPos(QWidget* pCheckBox);
    QPoint getGroupBoxCheckClickPos(QWidget* pGroupBox);
    QPoint getRadioButtonClickPos(QWidget* pRadioButton);
    // The one that is shown among the dock widgets behind the same tab bar; null when there is none.
    QWidget* getActivatedSiblingDockWidget(QWidget* pDockWidget);
    // Whether the dock widget is shown in the active window.
    bool isDockWidgetActive(QWidget* pDockWidget);
    // The one tray icon with the object name; null, and getLastError() says why, when there is not exactly
    // one.
    QObject* findTrayIcon(const QString& strObjectName);

protected:
    bool event(QEvent* event) override;

private:
    const QPointer<CInternalSquishProxyCleanup> registry;
};

} // namespace LmSquishProxy
