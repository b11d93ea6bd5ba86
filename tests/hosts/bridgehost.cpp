// An application that looks for the script-facing object inside itself and calls it, as a test tool does; see
// tests/protocol/test_hook.py.

#include "bridge/nameprovider.h"
#include "signalhandler.h"
#include "testhost.h"

#include <QApplication>
#include <QCheckBox>
#include <QProcess>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtCore/QLibrary>
#include <QtCore/QVariant>

#include <cstdio>
#include <cstring>

namespace {

// The argument that has the program say the variable of its environment, and nothing else.
const char sayPrefix[] = "--say-prefix";

QList<QWidget*> scriptObjects()
{
    QList<QWidget*> objects;
    const QWidgetList topLevels = QApplication::topLevelWidgets();
    for (QWidget* widget : topLevels) {
        if (widget->inherits("LmSquishProxy::CSquishProxy"))
            objects.append(widget);
    }
    return objects;
}

void journalScriptObjects(TestHost& host)
{
    const QList<QWidget*> objects = scriptObjects();
    for (const QWidget* object : objects) {
        host.journal(QString::fromLatin1("script object %1 %2 visible %3 parent %4")
                         .arg(QLatin1String(object->metaObject()->className()), object->objectName())
                         .arg(object->isVisible())
                         .arg(object->parent() != nullptr));
    }
    host.journal(QString::fromLatin1("script objects %1").arg(objects.size()));
}

void callGetWidget(TestHost& host, const char* path)
{
    QWidget* found = nullptr;
    QString error;
    QWidget* const object = scriptObjects().value(0);
    const bool called = object
        && QMetaObject::invokeMethod(object, "getWidget", Q_RETURN_ARG(QWidget*, found),
            Q_ARG(QString, QString::fromLatin1("Bridge")), Q_ARG(QString, QLatin1String(path)))
        && QMetaObject::invokeMethod(object, "getLastPyTestError", Q_RETURN_ARG(QString, error));
    host.journal(QString::fromLatin1("called %1 found %2 error %3")
                     .arg(called)
                     .arg(found ? found->objectName() : QLatin1String("nothing"), error));
}

// The variable as a program that this application starts sees it.
void journalChildEnvironment(TestHost& host)
{
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), QStringList() << QLatin1String(sayPrefix));
    child.waitForFinished();
    host.journal(QLatin1String("child environment ") + QString::fromLocal8Bit(child.readAllStandardOutput()).trimmed());
}

// Names the objects that have no name by a property, as the application that installs it likes.
class PropertyProvider final : public LmSquishProxy::NameProvider
{
public:
    QString name(const QObject* object) override { return object->property("providedName").toString(); }
};

// Through the function that the agent's library exports.
void installNameProvider(TestHost& host, LmSquishProxy::NameProvider* provider)
{
    const QStringList arguments = QCoreApplication::arguments();
    QLibrary library(arguments.value(arguments.indexOf(QLatin1String("--agent")) + 1));
    const auto install = reinterpret_cast<decltype(&LmSquishProxy::setNameProvider)>(
        library.resolve("_ZN13LmSquishProxy15setNameProviderEPNS_12NameProviderE"));
    if (install)
        install(provider);
    else
        host.journal(library.errorString());
}

void callFindByName(TestHost& host, const char* name)
{
    QWidget* found = nullptr;
    QWidget* const object = scriptObjects().value(0);
    const bool called = object
        && QMetaObject::invokeMethod(object, "findWidgetByHierarchicalName", Q_RETURN_ARG(QWidget*, found),
            Q_ARG(QStringList, QStringList(QLatin1String(name))));
    host.journal(QString::fromLatin1("called %1 found %2")
                     .arg(called)
                     .arg(found ? QLatin1String(found->metaObject()->className()) : QLatin1String("nothing")));
}

void build(TestHost& host)
{
    auto* window = new QWidget;
    window->setObjectName(QLatin1String("bridge"));
    window->setWindowTitle(QLatin1String("Bridge"));
    new QVBoxLayout(window);
    auto* button = new QPushButton(QLatin1String("OK"));
    button->setObjectName(QLatin1String("ok"));
    window->layout()->addWidget(button);
    auto* unnamed = new QCheckBox;
    unnamed->setProperty("providedName", QLatin1String("provided"));
    window->layout()->addWidget(unnamed);
    window->move(60, 60);
    window->show();

    host.onRequest(QLatin1String("environment"), [&host] {
        host.journal(QLatin1String("environment ") + QString::fromLocal8Bit(qgetenv("SQUISH_PREFIX").constData()));
    });
    host.onRequest(QLatin1String("childEnvironment"), [&host] { journalChildEnvironment(host); });
    host.onRequest(QLatin1String("scriptObjects"), [&host] { journalScriptObjects(host); });
    host.onRequest(QLatin1String("callForButton"), [&host] { callGetWidget(host, "bridge/ok"); });
    host.onRequest(QLatin1String("callForNothing"), [&host] { callGetWidget(host, "nobody"); });
    host.onRequest(QLatin1String("callForProvided"), [&host] { callFindByName(host, "provided"); });
    host.onRequest(QLatin1String("installNameProvider"), [&host] {
        static PropertyProvider provider;
        installNameProvider(host, &provider);
    });
    host.onRequest(QLatin1String("removeNameProvider"), [&host] { installNameProvider(host, nullptr); });
    host.onRequest(QLatin1String("deleteScriptObject"), [] { delete scriptObjects().value(0); });
    host.onRequest(QLatin1String("watchScriptObject"), [&host] {
        // No child of the object: those are gone by the time of the signal.
        auto* handler = new SignalHandler(
            &host, [&host](const QString&) { host.journal(QLatin1String("script object destroyed")); });
        QObject::connect(scriptObjects().value(0), SIGNAL(destroyed()), handler, SLOT(handle()));
    });
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && std::strcmp(argv[1], sayPrefix) == 0)
        return std::puts(qgetenv("SQUISH_PREFIX").constData()) < 0;
    return TestHost::run(argc, argv, build);
}
