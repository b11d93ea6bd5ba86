// Stands in for an outside tool's Qt wrapper. Journals each port that it is asked to listen on, as "asked
// PORT".
//   STANDIN_REFUSALS=N   refuse the first N ports
//   STANDIN_CALL=PATH    call the script object's getWidget() with the window "Bridge" and this path, and say
//   what came

#include <QApplication>
#include <QWidget>

#include <cstdio>

namespace {

QObject* scriptObject()
{
    const QWidgetList topLevels = QApplication::topLevelWidgets();
    for (QWidget* widget : topLevels) {
        if (widget->objectName() == QLatin1String("LmSquishProxy"))
            return widget;
    }
    return nullptr;
}

void callScriptObject(const QString& path)
{
    QWidget* widget = nullptr;
    const bool called = QMetaObject::invokeMethod(scriptObject(), "getWidget", Q_RETURN_ARG(QWidget*, widget),
        Q_ARG(QString, QString::fromLatin1("Bridge")), Q_ARG(QString, path));
    std::printf("wrapper called %d found %s\n", called, widget ? widget->metaObject()->className() : "nothing");
}

} // namespace

extern "C" Q_DECL_EXPORT bool qtwrapper_initialize_builtin_hook(int port)
{
    static int refusals = qgetenv("STANDIN_REFUSALS").toInt();
    std::printf("asked %d\n", port);
    const QByteArray path = qgetenv("STANDIN_CALL");
    if (!path.isEmpty())
        callScriptObject(QString::fromLatin1(path.constData()));
    std::fflush(stdout);
    return refusals-- <= 0;
}
