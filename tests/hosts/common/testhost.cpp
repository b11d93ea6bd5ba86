#include "testhost.h"

#include "agent/testclient.h"
#include "compat/variant.h"
#include "inputcounter.h"
#include "signalhandler.h"
#include "standardinput.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>
#include <QWidget>
#include <QtCore/QLibrary>
#include <QtCore/QStringList>

#include <algorithm>
#include <cstdio>

namespace {

StandardInput* standardInput()
{
    static auto* const input = new StandardInput;
    return input;
}

QString valueText(const QVariant& value)
{
    if (compat::typeOf(value) == QMetaType::QStringList)
        return value.toStringList().join(QLatin1String("|"));
    if (compat::typeOf(value) == QMetaType::QRect) {
        const QRect rect = value.toRect();
        return QString::fromLatin1("%1,%2 %3x%4").arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height());
    }
    return value.isValid() ? compat::textOf(value) : QString::fromLatin1("<invalid>");
}

QString mouseText(const char* word, const QObject* object, const QMouseEvent* event)
{
    return QString::fromLatin1("%1 %2 %3,%4 button %5 buttons %6 modifiers %7")
        .arg(QLatin1String(word), object->objectName())
        .arg(event->pos().x())
        .arg(event->pos().y())
        .arg(int(event->button()))
        .arg(int(event->buttons()))
        .arg(int(event->modifiers()));
}

QString keyText(const char* word, const QObject* object, const QKeyEvent* event)
{
    return QString::fromLatin1("%1 %2 %3 '%4' modifiers %5")
        .arg(QLatin1String(word), object->objectName())
        .arg(event->key())
        .arg(event->text())
        .arg(int(event->modifiers()));
}

} // namespace

int TestHost::run(int argc, char** argv, const std::function<void(TestHost&)>& build)
{
    QApplication application(argc, argv);
    return run(application, build);
}

int TestHost::run(QApplication&, const std::function<void(TestHost&)>& build)
{
    const int doubleClickInterval = QApplication::doubleClickInterval();
    const bool isComboAnimated = QApplication::isEffectEnabled(Qt::UI_AnimateCombo);
    int result = 0;
    for (bool isWanted = true; isWanted;) {
        std::unique_ptr<TestHost> host(new TestHost);
        result = host->runOnce(build);
        isWanted = host->isWantedAgain && host->waitForNextTest();
        if (isWanted)
            host.release()->setParent(QCoreApplication::instance()); // objects that outlive the windows may call it
        QApplication::setDoubleClickInterval(doubleClickInterval);
        QApplication::setEffectEnabled(Qt::UI_AnimateCombo, isComboAnimated);
    }
    return result;
}

int TestHost::runOnce(const std::function<void(TestHost&)>& build)
{
    const QStringList arguments = QCoreApplication::arguments();
    agentLibrary = arguments.value(arguments.indexOf(QLatin1String("--agent")) + 1);
    const std::unique_ptr<InputCounter> counter(new InputCounter);
    build(*this);
    if (!arguments.contains(QLatin1String("--late")))
        QTimer::singleShot(0, this, SLOT(loadAgentWhenActive()));
    const int result = QApplication::exec();
    journal(QLatin1String("exec returned"));
    deleteAgent();
    return result;
}

// Removes the windows, and returns whether there is a next test.
bool TestHost::waitForNextTest()
{
    isWantedAgain = false;
    QApplication::setQuitOnLastWindowClosed(false);
    const auto belongsToOthers = [](const QWidget* window) {
        // Qt 4's own style for Windows has such a widget, and deletes it when the process ends.
        const bool isOfStyle = window->objectName().isEmpty() && !window->testAttribute(Qt::WA_WState_ExplicitShowHide);
        return window->parentWidget() || isOfStyle;
    };
    QWidgetList windows;
    do { // as one may take others with it
        windows = QApplication::topLevelWidgets();
        windows.erase(std::remove_if(windows.begin(), windows.end(), belongsToOthers), windows.end());
        delete windows.value(0);
    } while (windows.size() > 1);
    journal(QLatin1String("without windows"));
    QApplication::exec();
    disconnect(standardInput(), nullptr, this, nullptr);
    isMute = true;
    QApplication::setQuitOnLastWindowClosed(true);
    return isWantedAgain;
}

TestHost::TestHost()
{
    connect(standardInput(), SIGNAL(arrived(QByteArray)), SLOT(readRequest(QByteArray)));
    onRequest(QLatin1String("loadAgent"), [this] { loadAgent(); });
    onRequest(QLatin1String("quit"), [] { QCoreApplication::quit(); });
    onRequest(
        QLatin1String("paste"), [this] { journal(QLatin1String("clipboard ") + QApplication::clipboard()->text()); });
    onRequest(QLatin1String("agentState"), [this] {
        const auto* socket = static_cast<TestClient*>(client);
        journal(QString::fromLatin1("agent open %1 state %2").arg(socket->isOpen()).arg(socket->state()));
    });
    onRequest(QLatin1String("rememberState"), [this] {
        if (!state)
            state.reset(new HostState);
        remembered = state->values();
    });
    onRequest(QLatin1String("restore"), [this] { state->restore(); });
    onRequest(QLatin1String("changes"), [this] { journalChanges(); });
    onRequest(QLatin1String("deleteAgent"), [this] { deleteAgent(); });
}

void TestHost::loadAgentWhenActive()
{
    // Until the window manager has shown and activated the first window, no input could reach it.
    const int retryMilliseconds = 5;
    const int retriesPerActivation = 1000;
    if (QApplication::activeWindow()) {
        loadAgent();
        return;
    }
    if (++retries % retriesPerActivation == 0)
        activateAgain();
    QTimer::singleShot(retryMilliseconds, this, SLOT(loadAgentWhenActive()));
}

// A window that comes up while the one of another program goes can be left without the focus. A user would click on it.
void TestHost::activateAgain()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        if (!window->isVisible())
            continue;
        journal(QLatin1String("not active, and activated again: ") + window->objectName());
        window->activateWindow();
        return;
    }
}

void TestHost::loadAgent()
{
    QLibrary library(agentLibrary);
    const auto create = reinterpret_cast<TestClient* (*)()>(library.resolve("createTestClient"));
    if (!create) {
        journal(QLatin1String("no agent: ") + library.errorString());
        return;
    }
    client = create();
    journal(QLatin1String("agent loaded"));
}

void TestHost::deleteAgent()
{
    delete client;
    client = nullptr;
}

void TestHost::retireAgent()
{
    if (client)
        client->deleteLater();
    client = nullptr;
}

void TestHost::journal(const QString& line)
{
    if (isMute)
        return;
    QString escaped = line;
    escaped.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('\n'), QLatin1String("\\n"));
    std::puts(escaped.toUtf8().constData());
    std::fflush(stdout);
}

void TestHost::onRequest(const QString& name, const std::function<void()>& action)
{
    actions.insert(name, action);
}

void TestHost::onSignal(QObject* sender, const char* signal, const std::function<void()>& action)
{
    auto* handler = new SignalHandler(sender, [action](const QString&) { action(); });
    connect(sender, signal, handler, SLOT(handle()));
}

void TestHost::journalSignal(QObject* sender, const char* signal, const QString& word)
{
    onSignal(sender, signal, [=] { journal(word + QLatin1Char(' ') + sender->objectName()); });
}

void TestHost::journalValue(QObject* sender, const char* signal, const QString& word)
{
    auto* handler = new SignalHandler(sender, [=](const QString& argument) {
        journal(word + QLatin1Char(' ') + sender->objectName() + QLatin1Char(' ') + argument);
    });
    const QByteArray signature(signal);
    const char* slot = signature.contains("(bool)") ? SLOT(handleBool(bool))
        : signature.contains("(int)")               ? SLOT(handleInt(int))
                                                    : SLOT(handleText(QString));
    connect(sender, signal, handler, slot);
}

void TestHost::journalInput(QObject* object)
{
    object->installEventFilter(this);
}

bool TestHost::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        journal(mouseText("press", watched, static_cast<QMouseEvent*>(event)));
        break;
    case QEvent::MouseButtonRelease:
        journal(mouseText("release", watched, static_cast<QMouseEvent*>(event)));
        break;
    case QEvent::MouseButtonDblClick:
        journal(mouseText("doubleclick", watched, static_cast<QMouseEvent*>(event)));
        break;
    case QEvent::MouseMove:
        journal(mouseText("move", watched, static_cast<QMouseEvent*>(event)));
        break;
    case QEvent::ContextMenu:
        journal(QString::fromLatin1("contextmenu %1 %2,%3 reason %4")
                    .arg(watched->objectName())
                    .arg(static_cast<QContextMenuEvent*>(event)->x())
                    .arg(static_cast<QContextMenuEvent*>(event)->y())
                    .arg(int(static_cast<QContextMenuEvent*>(event)->reason())));
        break;
    case QEvent::KeyPress:
        journal(keyText("keypress", watched, static_cast<QKeyEvent*>(event)));
        break;
    case QEvent::KeyRelease:
        journal(keyText("keyrelease", watched, static_cast<QKeyEvent*>(event)));
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void TestHost::readRequest(const QByteArray& bytes)
{
    if (bytes.isEmpty()) {
        QCoreApplication::quit(); // the test is gone
        return;
    }
    pending.append(bytes);
    // Not from here: a request that opens a modal dialog must not keep the notifier from the ones that follow.
    QMetaObject::invokeMethod(this, "executeRequests", Qt::QueuedConnection);
}

void TestHost::executeRequests()
{
    const int end = pending.indexOf('\n');
    if (end < 0)
        return;
    const QString request = QString::fromUtf8(pending.left(end).constData());
    pending.remove(0, end + 1);
    // Before this one, which may not return soon.
    QMetaObject::invokeMethod(this, "executeRequests", Qt::QueuedConnection);
    execute(request);
}

void TestHost::execute(const QString& request)
{
    const QString word = request.section(QLatin1Char(' '), 0, 0);
    const QString name = request.section(QLatin1Char(' '), 1, 1);
    if (word == QLatin1String("do") && actions.contains(name)) {
        actions.value(name)();
        journal(QLatin1String("done ") + name);
    } else if (request == QLatin1String("again")) {
        isWantedAgain = true;
        QCoreApplication::exit();
    } else if (word == QLatin1String("get")) {
        const QObject* object = find(name);
        const QByteArray property = request.section(QLatin1Char(' '), 2).toLatin1();
        journal(object ? QLatin1String("value ") + valueText(compat::readProperty(object, property.constData()))
                       : QLatin1String("value <no object ") + name + QLatin1Char('>'));
    } else {
        journal(QLatin1String("not understood: ") + request);
    }
}

void TestHost::journalChanges()
{
    const QStringList changes = state->changesSince(remembered);
    for (const QString& change : changes)
        journal(QLatin1String("changed ") + change);
}

QObject* TestHost::find(const QString& objectName) const
{
    const QWidgetList topLevels = QApplication::topLevelWidgets();
    for (QWidget* topLevel : topLevels) {
        if (topLevel->objectName() == objectName)
            return topLevel;
        if (QObject* found = topLevel->findChild<QObject*>(objectName))
            return found;
    }
    return qApp->findChild<QObject*>(objectName);
}

QWidget* TestHost::findWidget(const QString& objectName) const
{
    return qobject_cast<QWidget*>(find(objectName));
}
