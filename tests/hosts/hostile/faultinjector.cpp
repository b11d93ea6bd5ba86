#include "faultinjector.h"

#include "commonfaults.h"
#include "faults.h"
#include "testhost.h"
#include "watchfulapplication.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QPointer>
#include <QWidget>

#include <algorithm>

namespace {

struct SignalRow
{
    const char* className;
    const char* signal;
    Place place;
};

// Signals whose handlers may destroy the sender as far as Qt is concerned, and those that may not.
const SignalRow signalRows[] = {
    {"QAbstractButton", SIGNAL(clicked()), Place::Guarded},
    {"QAbstractButton", SIGNAL(pressed()), Place::Guarded},
    {"QAbstractButton", SIGNAL(released()), Place::Guarded},
    {"QAbstractButton", SIGNAL(toggled(bool)), Place::Fragile},
    {"QGroupBox", SIGNAL(toggled(bool)), Place::Fragile},
    {"QLineEdit", SIGNAL(textChanged(QString)), Place::Fragile},
    {"QLineEdit", SIGNAL(returnPressed()), Place::Fragile},
    {"QLineEdit", SIGNAL(editingFinished()), Place::Fragile},
    {"QLineEdit", SIGNAL(selectionChanged()), Place::Fragile},
    {"QTextEdit", SIGNAL(textChanged()), Place::Fragile},
    {"QTextEdit", SIGNAL(cursorPositionChanged()), Place::Fragile},
    {"QComboBox", SIGNAL(activated(int)), Place::Fragile},
    {"QComboBox", SIGNAL(highlighted(int)), Place::Fragile},
    {"QComboBox", SIGNAL(currentIndexChanged(int)), Place::Fragile},
    {"QAbstractSlider", SIGNAL(valueChanged(int)), Place::Fragile},
    {"QAbstractSlider", SIGNAL(sliderPressed()), Place::Fragile},
    {"QAbstractSlider", SIGNAL(sliderReleased()), Place::Fragile},
    {"QAbstractSpinBox", SIGNAL(editingFinished()), Place::Fragile},
    {"QSpinBox", SIGNAL(valueChanged(int)), Place::Fragile},
    {"QDoubleSpinBox", SIGNAL(valueChanged(double)), Place::Fragile},
    {"QDateTimeEdit", SIGNAL(dateTimeChanged(QDateTime)), Place::Fragile},
    {"QTabBar", SIGNAL(currentChanged(int)), Place::Fragile},
    {"QToolBox", SIGNAL(currentChanged(int)), Place::Fragile},
    {"QDockWidget", SIGNAL(visibilityChanged(bool)), Place::Fragile},
    {"QAbstractItemView", SIGNAL(clicked(QModelIndex)), Place::Fragile},
    {"QAbstractItemView", SIGNAL(pressed(QModelIndex)), Place::Fragile},
    {"QAbstractItemView", SIGNAL(doubleClicked(QModelIndex)), Place::Fragile},
    {"QAbstractItemView", SIGNAL(activated(QModelIndex)), Place::Fragile},
    {"QTreeView", SIGNAL(expanded(QModelIndex)), Place::Fragile},
    {"QTreeView", SIGNAL(collapsed(QModelIndex)), Place::Fragile},
    {"QItemSelectionModel", SIGNAL(currentChanged(QModelIndex, QModelIndex)), Place::Busy},
    {"QItemSelectionModel", SIGNAL(selectionChanged(QItemSelection, QItemSelection)), Place::Busy},
    {"QAbstractItemModel", SIGNAL(dataChanged(QModelIndex, QModelIndex)), Place::Fragile},
    {"QMenu", SIGNAL(aboutToShow()), Place::Fragile},
    {"QMenu", SIGNAL(aboutToHide()), Place::Delicate},
    {"QMenu", SIGNAL(hovered(QAction*)), Place::Fragile},
    {"QAction", SIGNAL(triggered()), Place::Guarded},
    {"QAction", SIGNAL(toggled(bool)), Place::Fragile},
    {"QMenuBar", SIGNAL(hovered(QAction*)), Place::Fragile},
    {"QStatusBar", SIGNAL(messageChanged(QString)), Place::Fragile},
    {"QDialog", SIGNAL(finished(int)), Place::Fragile},
    {"QFileDialog", SIGNAL(currentChanged(QString)), Place::Fragile},
};

// That of a file dialog tells that files have changed before it shows the new ones, whose names it has noted: when one of
// them is gone by then, as in an event loop that runs meanwhile, it goes on with a null pointer.
bool isModelOfFileDialog(const QObject* sender)
{
    return sender->inherits("QFileSystemModel") || sender->inherits("QUrlModel");
}

Place placeOf(const SignalRow& row, const QObject* sender)
{
    if (isModelOfFileDialog(sender))
        return Place::Busy;
    // A menu goes on with itself when it has triggered an action.
    if (sender->inherits("QAction") && qobject_cast<QMenu*>(sender->parent()))
        return Place::Fragile;
    return row.place == Place::Guarded && !WatchfulApplication::isFirstHandInput() ? Place::Fragile : row.place;
}

// How seldom a signal, an input event and another event is answered by something hostile: once in so many.
const int signalRarity = 4;
const int inputRarity = 16;
const int otherRarity = 20;

struct EventRow
{
    QEvent::Type type;
    Place place;
    int rarity;
};

// Qt looks after the target of input that was posted. In the middle of an activation, or of the pointer's crossing of
// borders, it goes through a list of widgets, and in that of a drag through a widget and what that is in; a popup that is
// closing stays the active one, and a modal dialog that opens meanwhile waits for its end.
const EventRow eventRows[] = {
    {QEvent::MouseButtonPress, Place::Guarded, inputRarity},
    {QEvent::MouseButtonRelease, Place::Guarded, inputRarity},
    {QEvent::MouseButtonDblClick, Place::Guarded, inputRarity},
    {QEvent::MouseMove, Place::Guarded, inputRarity},
    {QEvent::KeyPress, Place::Guarded, inputRarity},
    {QEvent::KeyRelease, Place::Guarded, inputRarity},
    {QEvent::ContextMenu, Place::Guarded, inputRarity},
    {QEvent::DragEnter, Place::Delicate, inputRarity},
    {QEvent::DragMove, Place::Delicate, inputRarity},
    {QEvent::DragLeave, Place::Delicate, inputRarity},
    {QEvent::Drop, Place::Fragile, signalRarity},
    {QEvent::FocusIn, Place::Fragile, otherRarity},
    {QEvent::FocusOut, Place::Fragile, otherRarity},
    {QEvent::ShortcutOverride, Place::Fragile, otherRarity},
    {QEvent::WindowActivate, Place::Delicate, otherRarity},
    {QEvent::WindowDeactivate, Place::Delicate, otherRarity},
    {QEvent::Enter, Place::Delicate, otherRarity},
    {QEvent::Leave, Place::Delicate, otherRarity},
    {QEvent::Close, Place::Delicate, otherRarity},
};

bool isSubmenuOfOpenMenu(const QMenu* menu)
{
    const QWidgetList shown = QApplication::topLevelWidgets();
    return std::any_of(shown.begin(), shown.end(), [menu](QWidget* window) {
        return window->isVisible() && qobject_cast<QMenu*>(window) && window->actions().contains(menu->menuAction());
    });
}

const EventRow* rowOf(const QEvent* event)
{
    for (const EventRow& row : eventRows) {
        if (row.type == event->type())
            return &row;
    }
    return nullptr;
}

} // namespace

FaultInjector::FaultInjector(Stage& wantedStage)
    : QObject(&wantedStage)
    , stage(wantedStage)
{
    qApp->installEventFilter(this);
}

void FaultInjector::connectSignals(Stage& stage, QObject* root)
{
    connectSignalsOf(stage, root);
    const QList<QObject*> objects = root->findChildren<QObject*>();
    for (QObject* object : objects)
        connectSignalsOf(stage, object);
}

void FaultInjector::connectSignalsOf(Stage& stage, QObject* sender)
{
    if (auto* menu = qobject_cast<QMenu*>(sender)) {
        // Before its other handlers.
        stage.host.onSignal(menu, SIGNAL(aboutToShow()), [menu] {
            if (isSubmenuOfOpenMenu(menu))
                WatchfulApplication::beginSubmenu();
        });
    }
    for (const SignalRow& row : signalRows) {
        if (!sender->inherits(row.className))
            continue;
        // The stage is gone before what is deleted at the very end.
        const QPointer<Stage> guarded(&stage);
        stage.host.onSignal(sender, row.signal, [guarded, sender, row] {
            if (guarded && !guarded->isQuiet() && !WatchfulApplication::isDestroying()
                && guarded->chance.oneIn(signalRarity))
                doHarm(*guarded, sender, placeOf(row, sender));
        });
    }
}

bool FaultInjector::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::DeferredDelete && !stage.mayDestroy()) {
        // In an event loop on top of a function of Qt that relies on the object.
        stage.whenSafe(watched, [](QObject* subject) { subject->deleteLater(); });
        return true;
    }
    if (event->type() == QEvent::DeferredDelete)
        stage.prepareEnd(watched);
    const EventRow* row = rowOf(event);
    if (!row || WatchfulApplication::isDestroying() || stage.isQuiet() || !watched->isWidgetType()
        || !stage.chance.oneIn(row->rarity))
        return false;
    const QPointer<QObject> target(watched);
    const bool guarded
        = row->place == Place::Guarded && !WatchfulApplication::isSpontaneous() && WatchfulApplication::isFirstHand();
    if (guarded && event->type() == QEvent::KeyPress && stage.chance.oneIn(4))
        destroyEditor(stage, watched, static_cast<QKeyEvent*>(event)->key());
    else
        doHarm(stage, watched, row->place == Place::Guarded && !guarded ? Place::Fragile : row->place);
    if (target)
        return guarded && stage.chance.oneIn(8);
    event->accept();
    return true;
}
