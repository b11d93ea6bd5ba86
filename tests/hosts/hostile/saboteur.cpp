#include "saboteur.h"

#include "deeds.h"
#include "testhost.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QEvent>
#include <QPointer>
#include <QWidget>

namespace {

struct SignalRow
{
    const char* className;
    const char* signal;
    Place place;
};

// What Qt allows to destroy its sender, and what it does not.
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
    {"QItemSelectionModel", SIGNAL(currentChanged(QModelIndex, QModelIndex)), Place::Fragile},
    {"QItemSelectionModel", SIGNAL(selectionChanged(QItemSelection, QItemSelection)), Place::Fragile},
    {"QAbstractItemModel", SIGNAL(dataChanged(QModelIndex, QModelIndex)), Place::Fragile},
    {"QMenu", SIGNAL(aboutToShow()), Place::Fragile},
    {"QMenu", SIGNAL(aboutToHide()), Place::Fragile},
    {"QMenu", SIGNAL(hovered(QAction*)), Place::Fragile},
    {"QAction", SIGNAL(triggered()), Place::Guarded},
    {"QAction", SIGNAL(toggled(bool)), Place::Fragile},
    {"QMenuBar", SIGNAL(hovered(QAction*)), Place::Fragile},
    {"QStatusBar", SIGNAL(messageChanged(QString)), Place::Fragile},
    {"QDialog", SIGNAL(finished(int)), Place::Fragile},
    {"QFileDialog", SIGNAL(currentChanged(QString)), Place::Fragile},
};

// How seldom a signal, an input event and another event is answered by something hostile: once in so many.
const int signalRarity = 7;
const int inputRarity = 45;
const int otherRarity = 60;

bool isInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ContextMenu:
        return true;
    default:
        return false;
    }
}

bool isOther(QEvent::Type type)
{
    switch (type) {
    case QEvent::FocusIn:
    case QEvent::FocusOut:
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
    case QEvent::Enter:
    case QEvent::Leave:
    case QEvent::Close:
    case QEvent::ShortcutOverride:
        return true;
    default:
        return false;
    }
}

} // namespace

Saboteur::Saboteur(Stage& wantedStage)
    : QObject(&wantedStage)
    , stage(wantedStage)
{
    qApp->installEventFilter(this);
}

void Saboteur::connectSignals(Stage& stage, QObject* root)
{
    connectSignalsOf(stage, root);
    const QList<QObject*> objects = root->findChildren<QObject*>();
    for (QObject* object : objects)
        connectSignalsOf(stage, object);
}

void Saboteur::connectSignalsOf(Stage& stage, QObject* sender)
{
    for (const SignalRow& row : signalRows) {
        if (!sender->inherits(row.className))
            continue;
        stage.host.onSignal(sender, row.signal, [&stage, sender, row] {
            if (!stage.isQuiet() && stage.chance.oneIn(signalRarity))
                doHarm(stage, sender, row.place);
        });
    }
}

bool Saboteur::eventFilter(QObject* watched, QEvent* event)
{
    const bool input = isInput(event->type());
    if (stage.isQuiet() || !watched->isWidgetType() || (!input && !isOther(event->type())))
        return false;
    if (!stage.chance.oneIn(input ? inputRarity : otherRarity))
        return false;
    // Qt looks again for the target of input that was posted, and for no other.
    const QPointer<QObject> target(watched);
    doHarm(stage, watched, input && !event->spontaneous() ? Place::Guarded : Place::Fragile);
    if (target)
        return stage.chance.oneIn(8);
    event->accept();
    return true;
}
