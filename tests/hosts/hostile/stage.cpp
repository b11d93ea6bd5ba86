#include "stage.h"

#include "faultinjector.h"
#include "scenes.h"
#include "testhost.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QVariant>
#include <QtCore/QTimerEvent>

#include <algorithm>

namespace {

const int tickMilliseconds = 20;
const int ticksOfLife = 90;
const int ticksOfPopup = 8;
const int ticksOfModal = 5;
const int maximumNesting = 3;
const char nestedProperty[] = "nestedByTheApplication";

// Also one that is hidden: the function that waits for it may not have come to its end yet.
bool isMenuOfFileDialog(const QWidget* window)
{
    if (!qobject_cast<const QMenu*>(window))
        return false;
    const QWidget* ancestor = window;
    while (ancestor && !qobject_cast<const QFileDialog*>(ancestor))
        ancestor = ancestor->parentWidget();
    return ancestor;
}

// Qt hands the keys that an item's editor has not seen yet to it from within the destructor of its view, and a view does not
// live through what it makes of them. A user's keys do not wait like that.
void dropKeysOfEditors(const QObject* victim)
{
    QWidget* focus = QApplication::focusWidget();
    const QObject* ancestor = focus;
    while (ancestor && ancestor != victim)
        ancestor = ancestor->parent();
    if (!ancestor)
        return;
    QCoreApplication::removePostedEvents(focus, QEvent::KeyPress);
    QCoreApplication::removePostedEvents(focus, QEvent::KeyRelease);
}

// When the last modal dialog goes, Qt 4 remembers the widget under the mouse, also when that is the dialog's parent and in the
// middle of its destructor.
void hideModalDialogsOf(const QObject* victim)
{
    const QList<QDialog*> dialogs = victim->findChildren<QDialog*>();
    for (QDialog* dialog : dialogs) {
        if (dialog->isModal())
            dialog->hide();
    }
}

// The popup of a completer that outlives its line edit sends keys to it nevertheless in Qt 4.
void hideCompletersOf(QObject* victim)
{
    QList<QLineEdit*> edits = victim->findChildren<QLineEdit*>();
    if (auto* edit = qobject_cast<QLineEdit*>(victim))
        edits.append(edit);
    for (QLineEdit* edit : edits) {
        QAbstractItemView* popup
            = edit->completer() ? edit->completer()->popup() : nullptr; // none where it completes inline
        if (popup)
            popup->hide();
    }
}

} // namespace

Stage::Stage(TestHost& testHost, const Scene& wantedScene, quint32 seed)
    : host(testHost)
    , chance(seed)
    , scene(wantedScene)
{
    rebuild();
    startTimer(tickMilliseconds);
}

QWidget* Stage::randomWidget()
{
    if (!mainWindow)
        return nullptr;
    const QList<QWidget*> widgets = mainWindow->findChildren<QWidget*>();
    return widgets.isEmpty() ? nullptr : widgets.at(chance.below(static_cast<int>(widgets.size())));
}

void Stage::rebuild()
{
    ++quiet;
    ticksToRebuild = ticksOfLife / 2 + chance.below(ticksOfLife);
    tricks.clear();
    for (const QPointer<QWidget>& stray : strays)
        destroy(stray);
    strays.clear();
    destroy(mainWindow);
    mainWindow = new QMainWindow; // deleted by the next rebuild
    own(mainWindow.data())->setObjectName(QLatin1String("stage"));
    mainWindow->setWindowTitle(QLatin1String("Stage"));
    auto* centre = new QWidget;
    centre->setObjectName(QLatin1String("centre"));
    mainWindow->setCentralWidget(centre);
    scene.build(*this, centre);
    FaultInjector::connectSignals(*this, mainWindow);
    mainWindow->setGeometry(40, 40, 760, 620);
    mainWindow->show();
    --quiet;
}

bool Stage::mayDestroy() const
{
    // A modal dialog that Qt itself has opened has a function of Qt waiting for it. So has the context menu of a file
    // dialog, which is even a variable of that function.
    const QWidgetList windows = QApplication::topLevelWidgets();
    if (std::any_of(windows.begin(), windows.end(), isMenuOfFileDialog))
        return false;
    const QWidget* modal = QApplication::activeModalWidget();
    return fragileFrames == 0 && (!modal || modal->property(nestedProperty).toBool());
}

void Stage::whenSafe(QObject* subject, const Trick& function)
{
    if (mayDestroy())
        function(subject);
    else if (waiting.size() < 100)
        waiting.append({subject, function});
}

void Stage::destroy(QObject* object)
{
    prepareEnd(object);
    undisturbed([object] { delete object; });
}

void Stage::undisturbed(const std::function<void()>& function)
{
    ++quiet;
    function();
    --quiet;
}

void Stage::prepareEnd(QObject* victim)
{
    if (!victim)
        return;
    dropKeysOfEditors(victim);
    if (QT_VERSION < QT_VERSION_CHECK(5, 0, 0))
        undisturbed([victim] {
            hideModalDialogsOf(victim);
            hideCompletersOf(victim);
        });
}

void Stage::nest(Place place, const std::function<void()>& function)
{
    if (nestedLoops >= maximumNesting)
        return;
    ++nestedLoops;
    fragileFrames += place == Place::Fragile ? 1 : 0;
    function();
    fragileFrames -= place == Place::Fragile ? 1 : 0;
    --nestedLoops;
}

void Stage::drag(Place place, const std::function<void()>& function)
{
    nest(place, [&] {
        ++drags;
        function();
        --drags;
    });
}

bool Stage::mustKeepWindows() const
{
    return QT_VERSION < QT_VERSION_CHECK(5, 0, 0) && drags > 0;
}

void Stage::addStray(QWidget* widget)
{
    strays.append(widget);
}

void Stage::timerEvent(QTimerEvent*)
{
    // Timers do not nest: nothing that is done from here may run an event loop.
    ++quiet;
    closeWhatStaysOpen();
    runWaiting();
    if (mayDestroy() && !mustKeepWindows() && (!mainWindow || --ticksToRebuild <= 0))
        rebuild();
    else if (mainWindow && chance.oneIn(3))
        mend();
    --quiet;
}

void Stage::runWaiting()
{
    if (!mayDestroy())
        return;
    const QList<Waiting> due = waiting;
    waiting.clear();
    for (const Waiting& one : due) {
        if (QObject* live = one.subject.get())
            one.function(live);
    }
}

void Stage::mend()
{
    if (QWidget* grabber = QWidget::mouseGrabber())
        grabber->releaseMouse();
    if (QWidget* grabber = QWidget::keyboardGrabber())
        grabber->releaseKeyboard();
    mainWindow->setEnabled(true);
    if (mainWindow->isMinimized())
        mainWindow->showNormal();
    mainWindow->show();
    const QList<QWidget*> widgets = mainWindow->findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        if (widget->property("hiddenBySabotage").toBool()) {
            widget->setProperty("hiddenBySabotage", false);
            widget->show();
        }
        if (widget->property("disabledBySabotage").toBool()) {
            widget->setProperty("disabledBySabotage", false);
            widget->setEnabled(true);
        }
    }
    if (!mainWindow->isActiveWindow() && !QApplication::activePopupWidget())
        mainWindow->activateWindow();
}

void Stage::closeWhatStaysOpen()
{
    QWidget* popup = QApplication::activePopupWidget();
    popupTicks = popup && popup == openPopup ? popupTicks + 1 : 0;
    openPopup = popup;
    if (popup && popupTicks > ticksOfPopup)
        popup->close();
    QWidget* modal = QApplication::activeModalWidget();
    modalTicks = modal && modal == openModal ? modalTicks + 1 : 0;
    openModal = modal;
    if (modal && modalTicks > ticksOfModal) {
        modal->setEnabled(true);
        modal->close();
    }
}
