// Item views that lose the focus, their editor or their life between two keys; see tests/protocol/test_view_keys.py.
// "do VIEW-FAULT-ROUNDS" makes a new view, for example "list-endEditor-3". The fault is done so many rounds of events after
// the view has opened an editor or, for "takeFocusOnTheWay", after its current item has changed. Then another widget gets
// the focus.

#include "latin1.h"
#include "testhost.h"
#include "viewjournal.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QStandardItemModel>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QTreeView>
#include <QVBoxLayout>
#include <QtCore/QBasicTimer>
#include <QtCore/QPointer>
#include <QtCore/QTimerEvent>

namespace {

const int mostRounds = 64;

using Fault = void (*)(QAbstractItemView* view, QWidget* editor);

// Does a fault, once, some rounds of events after it was told to, and gives the focus away.
class Culprit : public QObject
{
public:
    Culprit(TestHost& testHost, QAbstractItemView* victim, QWidget* heir, Fault theFault, int rounds)
        : QObject(victim->window())
        , host(testHost)
        , view(victim)
        , other(heir)
        , fault(theFault)
        , roundsLeft(rounds)
    {
        setObjectName(latin1("culprit"));
    }

    void start(QWidget* openedEditor)
    {
        editor = openedEditor;
        if (editor)
            editor->installEventFilter(this);
        if (roundsLeft >= 0)
            timer.start(0, this);
    }

    // Return closes the editor: Qt does not bear that it dies before it has done so.
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Return)
            editor = nullptr;
        return false;
    }

protected:
    void timerEvent(QTimerEvent*) override
    {
        if (roundsLeft-- > 0)
            return;
        timer.stop();
        fault(view, editor);
        other->setFocus();
        host.journal(latin1("fault is done"));
    }

private:
    TestHost& host;
    QAbstractItemView* const view;
    QPointer<QWidget> editor;
    QWidget* const other;
    const Fault fault;
    int roundsLeft;
    QBasicTimer timer;
};

// Makes editors, and tells the culprit of each.
class EditorMaker : public QStyledItemDelegate
{
public:
    EditorMaker(QObject* owner, Culprit* watcher)
        : QStyledItemDelegate(owner)
        , culprit(watcher)
    {
    }

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
        culprit->start(editor);
        return editor;
    }

private:
    Culprit* const culprit;
};

struct ViewKind
{
    const char* name;
    QAbstractItemView* (*make)(QWidget* parent);
};

const ViewKind viewKinds[] = {
    {"list", [](QWidget* parent) -> QAbstractItemView* { return new QListView(parent); }},
    {"tree", [](QWidget* parent) -> QAbstractItemView* { return new QTreeView(parent); }},
    {"table", [](QWidget* parent) -> QAbstractItemView* { return new QTableView(parent); }},
};

struct FaultKind
{
    const char* name;
    bool isOnTheWay;
    Fault fault;
};

const FaultKind faultKinds[] = {
    {"endEditor", false, [](QAbstractItemView*, QWidget* editor) { delete editor; }},
    {"endView", false, [](QAbstractItemView* view, QWidget*) { delete view; }},
    {"takeFocus", false, [](QAbstractItemView*, QWidget*) {}},
    {"takeFocusOnTheWay", true, [](QAbstractItemView*, QWidget*) {}},
};

void show(TestHost& host, QWidget* window, const ViewKind& viewKind, const FaultKind& faultKind, int rounds)
{
    delete window->findChild<QAbstractItemView*>(latin1("view"));
    delete window->findChild<QObject*>(latin1("culprit"));
    auto* other = window->findChild<QLineEdit*>(latin1("other"));
    other->clear();

    QAbstractItemView* view = viewKind.make(window);
    view->setObjectName(latin1("view"));
    auto* model = new QStandardItemModel(5, 2, view);
    for (int row = 0; row < 5; ++row) {
        for (int column = 0; column < 2; ++column)
            model->setData(model->index(row, column), QString::fromLatin1("R%1C%2").arg(row).arg(column));
    }
    view->setModel(model);
    view->setCurrentIndex(model->index(2, 0));
    auto* culprit = new Culprit(host, view, other, faultKind.fault, rounds);
    view->setItemDelegate(new EditorMaker(view, culprit));
    if (faultKind.isOnTheWay) {
        host.onSignal(view->selectionModel(), SIGNAL(currentChanged(QModelIndex, QModelIndex)),
            [culprit] { culprit->start(nullptr); });
    }
    window->layout()->addWidget(view);
    journalView(host, view);
}

void build(TestHost& host)
{
    auto* window = new QWidget;
    window->setObjectName(latin1("window"));
    window->setWindowTitle(latin1("Views"));
    new QVBoxLayout(window);
    auto* other = new QLineEdit;
    other->setObjectName(latin1("other"));
    host.journalInput(other);
    window->layout()->addWidget(other);
    for (const ViewKind& view : viewKinds) {
        for (const FaultKind& fault : faultKinds) {
            for (int rounds = 0; rounds < mostRounds; ++rounds) {
                host.onRequest(latin1("%1-%2-%3").arg(latin1(view.name), latin1(fault.name)).arg(rounds),
                    [&host, window, &view, &fault, rounds] { show(host, window, view, fault, rounds); });
            }
        }
    }
    window->setGeometry(60, 60, 400, 400);
    window->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
