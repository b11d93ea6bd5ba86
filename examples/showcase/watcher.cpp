#include "watcher.h"

#include "recorder.h"

#include <QHeaderView>

#include <algorithm>
#include <iterator>

namespace {

struct Row
{
    const char* className;
    const char* signal;
    const char* slot;
};

const Row rows[] = {
    {"QAbstractButton", SIGNAL(clicked()), SLOT(clicked())},
    {"QAbstractButton", SIGNAL(toggled(bool)), SLOT(toggled(bool))},
    {"QCheckBox", SIGNAL(stateChanged(int)), SLOT(checkStateChanged(int))},
    {"QGroupBox", SIGNAL(toggled(bool)), SLOT(toggled(bool))},
    {"QAction", SIGNAL(triggered()), SLOT(triggered())},
    {"QAction", SIGNAL(toggled(bool)), SLOT(toggled(bool))},
    {"QLineEdit", SIGNAL(textChanged(QString)), SLOT(textChanged())},
    {"QLineEdit", SIGNAL(returnPressed()), SLOT(returnPressed())},
    {"QTextEdit", SIGNAL(textChanged()), SLOT(textChanged())},
    {"QComboBox", SIGNAL(editTextChanged(QString)), SLOT(textChanged())},
    {"QComboBox", SIGNAL(currentIndexChanged(int)), SLOT(choiceChanged())},
    {"QAbstractSlider", SIGNAL(valueChanged(int)), SLOT(numberChanged(int))},
    {"QSpinBox", SIGNAL(valueChanged(int)), SLOT(numberChanged(int))},
    {"QDoubleSpinBox", SIGNAL(valueChanged(double)), SLOT(numberChanged(double))},
    {"QDateTimeEdit", SIGNAL(dateTimeChanged(QDateTime)), SLOT(dateTimeChanged(QDateTime))},
    {"QTabWidget", SIGNAL(currentChanged(int)), SLOT(pageChanged(int))},
    {"QTabBar", SIGNAL(currentChanged(int)), SLOT(pageChanged(int))},
    {"QToolBox", SIGNAL(currentChanged(int)), SLOT(pageChanged(int))},
    {"QAbstractItemView", SIGNAL(clicked(QModelIndex)), SLOT(itemClicked(QModelIndex))},
    {"QAbstractItemView", SIGNAL(doubleClicked(QModelIndex)), SLOT(itemDoubleClicked(QModelIndex))},
    {"QAbstractItemView", SIGNAL(activated(QModelIndex)), SLOT(itemActivated(QModelIndex))},
    {"QTreeView", SIGNAL(expanded(QModelIndex)), SLOT(itemExpanded(QModelIndex))},
    {"QTreeView", SIGNAL(collapsed(QModelIndex)), SLOT(itemCollapsed(QModelIndex))},
    {"QAbstractItemModel", SIGNAL(dataChanged(QModelIndex, QModelIndex)), SLOT(itemChanged(QModelIndex))},
    {"QItemSelectionModel", SIGNAL(selectionChanged(QItemSelection, QItemSelection)), SLOT(selectionChanged())},
    {"QHeaderView", SIGNAL(sectionClicked(int)), SLOT(headerClicked(int))},
    {"QDockWidget", SIGNAL(topLevelChanged(bool)), SLOT(dockFloated(bool))},
    {"QSystemTrayIcon", SIGNAL(activated(QSystemTrayIcon::ActivationReason)), SLOT(trayActivated())},
};

// Widgets that are made of further widgets, which are none of the user's concern.
const char* const closedClasses[]
    = {"QAbstractItemView", "QAbstractSpinBox", "QComboBox", "QLineEdit", "QTabBar", "QTextEdit"};

bool isClosed(const QObject* object)
{
    return std::any_of(std::begin(closedClasses), std::end(closedClasses),
        [object](const char* className) { return object->inherits(className); });
}

bool isPartOfAnother(const QObject* object)
{
    const QString name = object->objectName();
    return name.startsWith(QLatin1String("qt_")) || (name.isEmpty() && object->inherits("QScrollBar"));
}

void connectRows(QObject* object, const Recorder& recorder)
{
    for (const Row& row : rows) {
        if (object->inherits(row.className))
            QObject::connect(object, row.signal, &recorder, row.slot, Qt::UniqueConnection);
    }
}

void connectView(QAbstractItemView* view, const Recorder& recorder)
{
    connectRows(view->model(), recorder);
    connectRows(view->selectionModel(), recorder);
    for (QHeaderView* header : view->findChildren<QHeaderView*>())
        connectRows(header, recorder);
}

} // namespace

void watchAll(QObject* root, const Recorder& recorder)
{
    if (!isPartOfAnother(root))
        connectRows(root, recorder);
    if (auto* view = qobject_cast<QAbstractItemView*>(root))
        connectView(view, recorder);
    if (isClosed(root))
        return;
    for (QObject* child : root->children())
        watchAll(child, recorder);
}
