#include "viewjournal.h"

#include "testhost.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QStringList>
#include <QtCore/QTimer>

#include <algorithm>

namespace {

QString itemText(const QModelIndex& index)
{
    return QString::fromLatin1("%1,%2 '%3'").arg(index.row()).arg(index.column()).arg(index.data().toString());
}

QString selectedTexts(const QAbstractItemView* view)
{
    if (!view->selectionModel())
        return QString();
    QModelIndexList indexes = view->selectionModel()->selectedIndexes();
    std::sort(indexes.begin(), indexes.end());
    QStringList texts;
    for (const QModelIndex& index : indexes)
        texts.append(index.data().toString());
    return texts.join(QLatin1String("|"));
}

// Journals the input at the line edits in which a view has its items edited, as that of NAMEEditor.
class EditorJournal : public QObject
{
public:
    EditorJournal(TestHost& testHost, const QAbstractItemView* view)
        : QObject(view->viewport())
        , host(testHost)
        , name(view->objectName() + QLatin1String("Editor"))
    {
        view->viewport()->installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::ChildPolished) {
            if (auto* editor = qobject_cast<QLineEdit*>(static_cast<QChildEvent*>(event)->child())) {
                editor->setObjectName(name);
                host.journalInput(editor);
            }
        }
        return false;
    }

private:
    TestHost& host;
    const QString name;
};

} // namespace

void journalView(TestHost& host, QAbstractItemView* view)
{
    const QString name = view->objectName();
    const QString current = QString::fromLatin1("current %1 ").arg(name);
    const QString selection = QString::fromLatin1("selection %1 ").arg(name);
    const QString data = QString::fromLatin1("data %1 ").arg(name);
    view->viewport()->setObjectName(name + QLatin1String("Viewport"));
    host.journalInput(view);
    host.journalInput(view->viewport());
    new EditorJournal(host, view);
    if (view->model()) {
        host.onSignal(view->selectionModel(), SIGNAL(currentChanged(QModelIndex, QModelIndex)),
            [=, &host] { host.journal(current + itemText(view->currentIndex())); });
        host.onSignal(view->selectionModel(), SIGNAL(selectionChanged(QItemSelection, QItemSelection)),
            [=, &host] { host.journal(selection + selectedTexts(view)); });
        host.onSignal(view->model(), SIGNAL(dataChanged(QModelIndex, QModelIndex)), [=, &host] {
            host.journal(data + itemText(view->currentIndex())
                + QString::fromLatin1(" check %1").arg(view->currentIndex().data(Qt::CheckStateRole).toInt()));
        });
    }
    host.onRequest(name + QLatin1String("State"), [=, &host] {
        host.journal(QString::fromLatin1("state %1 current %2 selected %3")
                         .arg(name, itemText(view->currentIndex()), selectedTexts(view)));
    });
}

void afterSignal(TestHost& host, QObject* sender, const char* signal, const std::function<void()>& function)
{
    auto* timer = new QTimer(QCoreApplication::instance()); // the function may end the sender
    timer->setSingleShot(true);
    host.onSignal(sender, signal, [timer] { timer->start(0); });
    host.onSignal(timer, SIGNAL(timeout()), function);
}

FocusThief::FocusThief(QWidget* watched, QWidget* newOwner)
    : QObject(watched)
    , thief(newOwner)
{
    watched->installEventFilter(this);
}

bool FocusThief::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusIn)
        thief->setFocus();
    return QObject::eventFilter(watched, event);
}

EventHandler::EventHandler(QObject* watched, int eventType, const std::function<void()>& handler)
    : QObject(watched)
    , type(eventType)
    , function(handler)
{
    watched->installEventFilter(this);
}

bool EventHandler::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == type)
        function();
    return QObject::eventFilter(watched, event);
}
