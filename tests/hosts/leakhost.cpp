// One widget of each family, and nothing that keeps what happens to it; see tests/protocol/test_leaks.py.

#include "latin1.h"
#include "resourceusage.h"
#include "testhost.h"
#include "valuewidget.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDockWidget>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenuBar>
#include <QProxyStyle>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QStatusBar>
#include <QStyleFactory>
#include <QSystemTrayIcon>
#include <QTabBar>
#include <QTableWidget>
#include <QTextEdit>
#include <QToolBox>
#include <QToolButton>
#include <QTreeWidget>

#include <cstdlib>
#include <unistd.h>

namespace {

// Plants a leak of each kind when a property is read.
class Leaky : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int bytes READ bytes)
    Q_PROPERTY(int object READ object)
    Q_PROPERTY(int widget READ widget)
    Q_PROPERTY(int file READ file)
    Q_PROPERTY(int lost READ lost)

public:
    int bytes() const
    {
        static void* last = nullptr;
        void** piece = static_cast<void**>(std::malloc(16));
        *piece = last;
        last = piece;
        return 0;
    }
    int object() const { return (new QObject(qApp))->children().size(); }
    int widget() const { return (new QWidget)->x(); }
    int lost() const
    {
        void* volatile piece = std::malloc(16); // volatile, or the compiler leaves it out
        return piece ? 0 : 1;
    }
    int file() const { return dup(STDERR_FILENO); }
};

// Qt's styles name each highlighted arrow of a submenu that they paint anew, and the pixmap cache keeps the names, some
// 300 bytes each, when it has thrown away the arrows. An application without these arrows shows what else grows.
class ArrowlessStyle : public QProxyStyle
{
public:
    ArrowlessStyle()
        : QProxyStyle(QStyleFactory::create(latin1("windows")))
    {
    }

    void drawPrimitive(
        PrimitiveElement element, const QStyleOption* option, QPainter* painter, const QWidget* widget) const override
    {
        if (element != PE_IndicatorArrowRight && element != PE_IndicatorArrowLeft)
            QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
};

class LeakWindow : public QMainWindow
{
public:
    explicit LeakWindow(TestHost& testHost)
        : host(testHost)
        , grid(new QGridLayout)
    {
        setObjectName(latin1("window"));
        setWindowTitle(latin1("Leaks"));
        auto* central = new QWidget;
        central->setLayout(grid);
        setCentralWidget(central);
        addButtons();
        addFields();
        addViews();
        addContainers();
        addMenus();
        add("canvas", new QWidget)->setFixedSize(80, 40);
        add("values", new ValueWidget);
        add("leaky", new Leaky);
        auto* icon = new QSystemTrayIcon(qApp);
        icon->setObjectName(latin1("tray"));
        setGeometry(30, 40, 1100, 700);
        show();
    }

private:
    template <class Widget>
    Widget* add(const char* name, Widget* widget)
    {
        const int columns = 4;
        widget->setObjectName(latin1(name));
        const int index = grid->count();
        grid->addWidget(widget, index / columns, index % columns);
        return widget;
    }

    void addButtons()
    {
        add("button", new QPushButton(latin1("&Button")));
        add("check", new QCheckBox(latin1("Check")));
        add("radio", new QRadioButton(latin1("Radio")));
        add("tool", new QToolButton)->setCheckable(true);
        auto* group = add("group", new QGroupBox(latin1("Group")));
        group->setCheckable(true);
        group->setMinimumHeight(40);
        add("disabled", new QPushButton(latin1("Disabled")))->setEnabled(false);
        add("plain", new QPushButton(latin1("Plain")))->hide();
    }

    void addFields()
    {
        add("line", new QLineEdit);
        add("text", new QTextEdit)->setFixedHeight(50);
        add("spin", new QSpinBox);
        add("doubleSpin", new QDoubleSpinBox);
        add("date", new QDateEdit)->setDisplayFormat(latin1("yyyy-MM-dd"));
        auto* slider = add("slider", new QSlider(Qt::Horizontal));
        slider->setRange(0, 10);
        auto* combo = add("combo", new QComboBox);
        combo->addItems(QStringList() << latin1("one") << latin1("two") << latin1("three"));
        auto* editable = add("editable", new QComboBox);
        editable->setEditable(true);
        editable->setCompleter(nullptr);
        editable->setInsertPolicy(QComboBox::NoInsert);
        editable->addItems(QStringList() << latin1("one") << latin1("two"));
    }

    void addViews()
    {
        auto* list = add("list", new QListWidget);
        for (int i = 0; i < 3; ++i) {
            auto* item = new QListWidgetItem(latin1("item %1").arg(i), list);
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable | Qt::ItemIsEditable);
            item->setCheckState(Qt::Unchecked);
        }
        auto* tree = add("tree", new QTreeWidget);
        tree->setHeaderLabels(QStringList() << latin1("Name") << latin1("Size"));
        auto* folder = new QTreeWidgetItem(tree, QStringList(latin1("folder")));
        const char* const names[] = {"a", "b"};
        for (const char* name : names) {
            auto* item = new QTreeWidgetItem(folder, QStringList() << latin1(name) << latin1("1"));
            item->setFlags(item->flags() | Qt::ItemIsEditable);
        }
        auto* table = add("table", new QTableWidget(3, 3));
        table->setHorizontalHeaderLabels(QStringList() << latin1("A") << latin1("B") << latin1("C"));
        for (int row = 0; row < 3; ++row) {
            for (int column = 0; column < 3; ++column)
                table->setItem(row, column, new QTableWidgetItem(latin1("cell")));
        }
    }

    void addContainers()
    {
        auto* tabs = add("tabs", new QTabBar);
        auto* box = add("toolBox", new QToolBox);
        const char* const pages[] = {"First", "Second"};
        for (const char* page : pages) {
            tabs->addTab(latin1(page));
            box->addItem(new QLabel(latin1(page)), latin1(page));
            auto* dock = new QDockWidget(latin1(page), this);
            dock->setObjectName(latin1("dock") + latin1(page));
            dock->setWidget(new QLabel(latin1(page)));
            addDockWidget(Qt::RightDockWidgetArea, dock);
        }
        tabifyDockWidget(findChild<QDockWidget*>(latin1("dockFirst")), findChild<QDockWidget*>(latin1("dockSecond")));
        statusBar()->setObjectName(latin1("status"));
        statusBar()->showMessage(latin1("Ready"));
    }

    void addMenus()
    {
        menuBar()->setObjectName(latin1("bar"));
        QMenu* file = menuBar()->addMenu(latin1("&File"));
        file->addAction(latin1("&Save"));
        file->addMenu(latin1("Send"))->addAction(latin1("Mail"));
        file->addAction(latin1("Wrap"))->setCheckable(true);
        popup = new QMenu(this);
        popup->setObjectName(latin1("popup"));
        popup->addAction(latin1("Copy"));
        popup->addMenu(latin1("More"))->addAction(latin1("Paste"));
        auto* opener = add("opener", new QPushButton(latin1("Open")));
        host.onSignal(opener, SIGNAL(clicked()), [this] { popup->popup(QPoint(900, 800)); });
        host.onRequest(latin1("popUp"), [this] { popup->popup(QPoint(900, 800)); });
        host.onRequest(latin1("closePopup"), [this] { popup->close(); });
    }

    TestHost& host;
    QGridLayout* grid;
    QMenu* popup = nullptr;
};

void build(TestHost& host)
{
    QApplication::setStyle(new ArrowlessStyle);
    new LeakWindow(host);
    auto* usage = new QObject(qApp);
    usage->setObjectName(latin1("usage"));
    host.onRequest(latin1("takeStock"), [usage] { takeStock(usage); });
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}

#include "leakhost.moc"
