// Views and fields of several sizes, to show how requests grow: lists and trees of 1,000, 10,000 and 100,000 items, a
// text edit, a line edit with a validator.

#include "agentloader.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QStandardItemModel>
#include <QTextEdit>
#include <QTreeView>
#include <QVBoxLayout>
#include <QValidator>

namespace {

// Accepts every text; the field it guards gets its text in one piece.
class AnyText : public QValidator
{
public:
    State validate(QString&, int&) const override { return Acceptable; }
};

// Takes a typed line feed for a new paragraph.
class ParagraphEdit : public QTextEdit
{
protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->text() == QLatin1String("\n"))
            textCursor().insertBlock();
        else
            QTextEdit::keyPressEvent(event);
    }
};

QStandardItemModel* listModel(int size)
{
    auto* model = new QStandardItemModel;
    for (int i = 0; i < size; ++i)
        model->appendRow(new QStandardItem(QString::fromLatin1("item %1").arg(i)));
    return model;
}

QStandardItemModel* treeModel(int size)
{
    const int parents = 300;
    auto* model = new QStandardItemModel;
    for (int i = 0; i < parents; ++i)
        model->appendRow(new QStandardItem(QString::fromLatin1("parent %1").arg(i)));
    for (int i = 0; i < size; ++i)
        model->item(i % parents)->appendRow(new QStandardItem(QString::fromLatin1("item %1").arg(i)));
    return model;
}

} // namespace

// Argument: the agent's library.
int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QWidget window;
    window.setObjectName(QLatin1String("window"));
    window.setWindowTitle(QLatin1String("Sizes"));
    auto* layout = new QVBoxLayout(&window);
    const int sizes[] = {1000, 10000, 100000};
    for (const int size : sizes) {
        auto* list = new QListView;
        list->setObjectName(QString::fromLatin1("list%1").arg(size));
        list->setModel(listModel(size));
        layout->addWidget(list);
        auto* tree = new QTreeView;
        tree->setObjectName(QString::fromLatin1("tree%1").arg(size));
        tree->setModel(treeModel(size));
        layout->addWidget(tree);
    }
    auto* text = new ParagraphEdit;
    text->setObjectName(QLatin1String("text"));
    layout->addWidget(text);
    auto* line = new QLineEdit;
    line->setObjectName(QLatin1String("line"));
    line->setMaxLength(1000000);
    line->setValidator(new AnyText);
    layout->addWidget(line);
    window.resize(500, 900);
    window.show();
    AgentLoader loader(QCoreApplication::arguments().value(1));
    return QApplication::exec();
}
