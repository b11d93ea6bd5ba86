// An application in which every slot, event filter and model does the worst:
//   hostilehost --agent LIBRARY --scenario NAME --seed NUMBER
// The seed decides what happens at the how-many-th event; it is printed at the start. See docs/reliability.md.

#include "faultinjector.h"
#include "scenes.h"
#include "stage.h"
#include "testhost.h"
#include "watchfulapplication.h"

#include <QClipboard>
#include <QStringList>
#include <QtCore/QDir>
#include <QtCore/QFileSystemWatcher>

const Scene scenes[] = {
    {"buttons", buildButtons},
    {"entries", buildEntries},
    {"containers", buildContainers},
    {"lists", buildLists},
    {"trees", buildTrees},
    {"tables", buildTables},
    {"generic", buildGeneric},
    {"menus", buildMenus},
    {"dialogs", buildDialogs},
    {"properties", buildProperties},
};
const int sceneCount = sizeof(scenes) / sizeof(scenes[0]);

QEvent::Type WatchfulApplication::inner = QEvent::None;
QEvent::Type WatchfulApplication::outer = QEvent::None;
bool WatchfulApplication::spontaneous = false;
int WatchfulApplication::destructions = 0;
int WatchfulApplication::depth = 0;
int WatchfulApplication::submenuDepth = 0;

bool WatchfulApplication::isFirstHandInput()
{
    const bool input = inner == QEvent::MouseButtonPress || inner == QEvent::MouseButtonRelease
        || inner == QEvent::MouseButtonDblClick || inner == QEvent::KeyPress || inner == QEvent::KeyRelease;
    return input && isFirstHand();
}

namespace {

QString option(const char* name)
{
    const QStringList arguments = QCoreApplication::arguments();
    return arguments.value(arguments.indexOf(QLatin1String(name)) + 1);
}

const Scene& wantedScene()
{
    const QString name = option("--scenario");
    for (const Scene& scene : scenes) {
        if (name == QLatin1String(scene.name))
            return scene;
    }
    qFatal("no such scenario: %s", qPrintable(name));
    return scenes[0];
}

void build(TestHost& host)
{
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setEffectEnabled(Qt::UI_AnimateCombo, false);
    // A text edit of Qt 6.4 pastes at a middle click also where nothing is selected, and dies of it.
    QApplication::clipboard()->setText(QLatin1String("selected"), QClipboard::Selection);
    const quint32 seed = option("--seed").toUInt();
    host.journal(QString::fromLatin1("seed %1").arg(seed));
    auto* stage = new Stage(host, wantedScene(), seed); // deleted below
    new FaultInjector(*stage);
    new QFileSystemWatcher(QStringList(QDir::currentPath()), stage);
    host.onSignal(qApp, SIGNAL(aboutToQuit()), [stage] { delete stage; });
}

} // namespace

int main(int argc, char** argv)
{
    WatchfulApplication application(argc, argv);
    return TestHost::run(application, build);
}
