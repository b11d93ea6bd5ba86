// Composite widgets with their inner parts under the cursor; see tests/protocol/test_query_composites.py.

#include "testhost.h"

#include <QApplication>
#include <QCursor>
#include <QDateTimeEdit>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTableWidget>
#include <QTextEdit>
#include <QTreeWidget>
#include <QVBoxLayout>

// Classes of applications that are known by their names.

class QAbstractScrollAreaWidget : public QWidget
{
    Q_OBJECT
};

class Q3ListView : public QWidget
{
    Q_OBJECT
};

class Q3ListBox : public QWidget
{
    Q_OBJECT
};

class Q3Table : public QWidget
{
    Q_OBJECT
};

class DerivedTable : public Q3Table
{
    Q_OBJECT
};

class VCNumeric : public QWidget
{
    Q_OBJECT
};

class DerivedNumeric : public VCNumeric
{
    Q_OBJECT
};

class VCFrequency : public QWidget
{
    Q_OBJECT
};

namespace {

class Composites : public QWidget
{
public:
    explicit Composites(TestHost& testHost)
        : host(testHost)
    {
        setObjectName(QLatin1String("composites"));
        setWindowTitle(QLatin1String("Composites"));
        addQtComposites();
        add("q3ListView", new Q3ListView, new QAbstractScrollAreaWidget);
        add("q3ListBox", new Q3ListBox, new QAbstractScrollAreaWidget);
        add("q3Table", new DerivedTable, new QAbstractScrollAreaWidget);
        add("frequency", new VCFrequency, new VCNumeric);
        add("numericElsewhere", new QWidget, new VCNumeric);
        add("derivedNumeric", new VCFrequency, new DerivedNumeric);
        add("labelInText", new QTextEdit, new QLabel);
    }

private:
    void addQtComposites()
    {
        add("spin", new QSpinBox);
        add("doubleSpin", new QDoubleSpinBox);
        add("date", new QDateEdit);
        add("text", new QTextEdit);
        add("treeWidget", new QTreeWidget);
        add("listWidget", new QListWidget);
        add("tableWidget", new QTableWidget);
        add("treeView", new QTreeView);
        add("listView", new QListView);
        add("tableView", new QTableView);
    }

    // Without a part: has one already.
    void add(const char* name, QWidget* composite, QWidget* part = nullptr)
    {
        composite->setObjectName(QLatin1String(name));
        composite->setFixedHeight(40);
        if (part) {
            part->setObjectName(QLatin1String(name) + QLatin1String("Part"));
            part->setParent(composite);
            part->setGeometry(0, 0, 100, 40);
        }
        column->addWidget(composite);
        const QPoint inPart(60, 32); // below a header
        host.onRequest(QLatin1String("pointAt:") + QLatin1String(name), [=] {
            QCursor::setPos(composite->mapToGlobal(inPart));
            host.journal(QLatin1String("part ")
                + QLatin1String(QApplication::widgetAt(composite->mapToGlobal(inPart))->metaObject()->className()));
        });
    }

    TestHost& host;
    QVBoxLayout* const column = new QVBoxLayout(this);
};

void build(TestHost& host)
{
    auto* composites = new Composites(host);
    composites->resize(200, 800);
    composites->move(20, 20);
    composites->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}

#include "compositehost.moc"
