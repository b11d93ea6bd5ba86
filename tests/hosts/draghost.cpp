// Drag and drop that Qt runs itself: rows of lists and trees, texts, and a label that takes texts; see
// tests/protocol/test_drag_and_drop.py.

#include "testhost.h"

#include <QDialog>
#include <QDrag>
#include <QDragEnterEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QTreeWidget>

namespace {

// Dragged by its own handler; journals "drag began", and "drag over ACTION" with the number of the action.
class DragLabel : public QLabel
{
public:
    DragLabel(TestHost& testHost, QWidget* parent)
        : QLabel(QLatin1String("Drag me"), parent)
        , host(testHost)
    {
    }

protected:
    void mousePressEvent(QMouseEvent*) override { }
    void mouseMoveEvent(QMouseEvent*) override
    {
        auto* data = new QMimeData;
        data->setText(text());
        auto* drag = new QDrag(this); // Qt deletes it
        drag->setMimeData(data);
        host.journal(QLatin1String("drag began"));
        const Qt::DropAction action = drag->exec(Qt::CopyAction);
        host.journal(QString::fromLatin1("drag over %1").arg(int(action)));
    }

private:
    TestHost& host;
};

// Takes texts; journals "entered TEXT", "left", "dropped TEXT".
class DropLabel : public QLabel
{
public:
    DropLabel(TestHost& testHost, QWidget* parent)
        : QLabel(QLatin1String("Drop here"), parent)
        , host(testHost)
    {
        setAcceptDrops(true);
    }

    bool opensDialog = false;
    bool deletesAgent = false;

protected:
    void dragEnterEvent(QDragEnterEvent* event) override
    {
        host.journal(QLatin1String("entered ") + event->mimeData()->text());
        event->acceptProposedAction();
        if (deletesAgent)
            host.deleteAgent();
    }
    void dragLeaveEvent(QDragLeaveEvent*) override { host.journal(QLatin1String("left")); }
    void dropEvent(QDropEvent* event) override
    {
        event->acceptProposedAction();
        host.journal(QLatin1String("dropped ") + event->mimeData()->text());
        if (!opensDialog)
            return;
        QDialog dialog(this);
        dialog.setObjectName(QLatin1String("dropDialog"));
        dialog.setWindowTitle(QLatin1String("Dropped"));
        dialog.exec();
        host.journal(QLatin1String("dialog closed"));
    }

private:
    TestHost& host;
};

template <class Widget>
Widget* placed(Widget* widget, const char* name, const QRect& rect)
{
    widget->setObjectName(QLatin1String(name));
    widget->setGeometry(rect);
    return widget;
}

QListWidget* addList(QWidget* parent, const char* name, const QRect& rect, QAbstractItemView::DragDropMode mode)
{
    auto* list = placed(new QListWidget(parent), name, rect);
    for (int i = 0; i < 4; ++i)
        list->addItem(QString::fromLatin1("%1 %2").arg(QLatin1String(name)).arg(i));
    list->setDragDropMode(mode);
    list->setDefaultDropAction(Qt::MoveAction);
    return list;
}

QString textsOf(const QListWidget* list)
{
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        texts.append(list->item(i)->text());
    return texts.join(QLatin1String("|"));
}

QString pathsOf(const QTreeWidget* tree)
{
    QStringList paths;
    for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* top = tree->topLevelItem(i);
        paths.append(top->text(0));
        for (int j = 0; j < top->childCount(); ++j)
            paths.append(top->text(0) + QLatin1Char('/') + top->child(j)->text(0));
    }
    return paths.join(QLatin1String("|"));
}

QTreeWidget* addTree(QWidget* parent)
{
    auto* tree = placed(new QTreeWidget(parent), "tree", QRect(330, 10, 150, 150));
    tree->setHeaderHidden(true);
    for (int i = 0; i < 3; ++i)
        new QTreeWidgetItem(tree, QStringList(QString::fromLatin1("Branch %1").arg(i)));
    new QTreeWidgetItem(tree->topLevelItem(0), QStringList(QLatin1String("Leaf")));
    tree->expandAll();
    tree->setDragDropMode(QAbstractItemView::InternalMove);
    return tree;
}

void build(TestHost& host)
{
    auto* window = placed(new QWidget, "window", QRect(60, 60, 660, 380));
    window->setWindowTitle(QLatin1String("Drags"));
    QListWidget* left = addList(window, "left", QRect(10, 10, 150, 150), QAbstractItemView::DragDrop);
    QListWidget* right = addList(window, "right", QRect(170, 10, 150, 150), QAbstractItemView::DragDrop);
    QListWidget* fixed = addList(window, "fixed", QRect(490, 10, 150, 150), QAbstractItemView::NoDragDrop);
    QTreeWidget* tree = addTree(window);

    auto* line = placed(new QLineEdit(QLatin1String("words"), window), "line", QRect(10, 180, 150, 30));
    line->setDragEnabled(true);
    auto* edit = placed(new QPlainTextEdit(QLatin1String("sentence"), window), "edit", QRect(170, 180, 200, 80));
    auto* label = placed(new DropLabel(host, window), "label", QRect(400, 180, 150, 60));
    placed(new DragLabel(host, window), "source", QRect(10, 280, 150, 60));
    placed(new QLabel(QLatin1String("nothing"), window), "plain", QRect(400, 260, 150, 30));

    host.onRequest(QLatin1String("selectTexts"), [=] {
        line->selectAll();
        edit->selectAll();
    });
    host.onRequest(QLatin1String("rows"), [=, &host] {
        host.journal(QLatin1String("left ") + textsOf(left));
        host.journal(QLatin1String("right ") + textsOf(right));
        host.journal(QLatin1String("fixed ") + textsOf(fixed));
        host.journal(QLatin1String("tree ") + pathsOf(tree));
    });
    host.onRequest(QLatin1String("openDialogAtDrop"), [=] { label->opensDialog = true; });
    host.onRequest(QLatin1String("deleteAgentWithinDrag"), [=] { label->deletesAgent = true; });
    host.onRequest(QLatin1String("deleteAgent"), [&host] { host.deleteAgent(); });
    window->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
