// One widget of each family, and nothing that keeps what happens to it; see tests/protocol/test_leaks.py.

#include "resourceusage.h"
#include "testhost.h"
#include "texts.h"
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

// What a leak of each kind looks like, planted by reading a property.
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
        : QProxyStyle(QStyleFactory::create(text("windows")))
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
        setObjectName(text("window"));
        setWindowTitle(text("Leaks"));
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
        icon->setObjectName(text("tray"));
        setGeometry(30, 40, 1100, 700);
        show();
    }

private:
    template <class Widget>
    Widget* add(const char* name, Widget* widget)
    {
        const int columns = 4;
        widget->setObjectName(text(name));
        const int index = grid->count();
        grid->addWidget(widget, index / columns, index % columns);
        return widget;
    }

    void addButtons()
    {
        add("button", new QPushButton(text("&Button")));
        add("check", new QCheckBox(text("Check")));
        add("radio", new QRadioButton(text("Radio")));
        add("tool", new QToolButton)->setCheckable(true);
        auto* group = add("group", new QGroupBox(text("Group")));
        group->setCheckable(true);
        group->setMinimumHeight(40);
        add("disabled", new QPushButton(text("Disabled")))->setEnabled(false);
        add("plain", new QPushButton(text("Plain")))->hide();
    }

    void addFields()
    {
        add("line", new QLineEdit);
        add("text", new QTextEdit)->setFixedHeight(50);
        add("spin", new QSpinBox);
        add("doubleSpin", new QDoubleSpinBox);
        add("date", new QDateEdit)->setDisplayFormat(text("yyyy-MM-dd"));
        auto* slider = add("slider", new QSlider(Qt::Horizontal));
        slider->setRange(0, 10);
        auto* combo = add("combo", new QComboBox);
        combo->addItems(QStringList() << text("one") << text("two") << text("three"));
        auto* editable = add("editable", new QComboBox);
        editable->setEditable(true);
        editable->setCompleter(nullptr);
        editable->setInsertPolicy(QComboBox::NoInsert);
        editable->addItems(QStringList() << text("one") << text("two"));
    }

    void addViews()
    {
        auto* list = add("list", new QListWidget);
        for (int i = 0; i < 3; ++i) {
            auto* item = new QListWidgetItem(text("item %1").arg(i), list);
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable | Qt::ItemIsEditable);
            item->setCheckState(Qt::Unchecked);
        }
        auto* tree = add("tree", new QTreeWidget);
        tree->setHeaderLabels(QStringList() << text("Name") << text("Size"));
        auto* folder = new QTreeWidgetItem(tree, QStringList(text("folder")));
        const char* const names[] = {"a", "b"};
        for (const char* name : names) {
            auto* item = new QTreeWidgetItem(folder, QStringList() << text(name) << text("1"));
            item->setFlags(item->flags() | Qt::ItemIsEditable);
        }
        auto* table = add("table", new QTableWidget(3, 3));
        table->setHorizontalHeaderLabels(QStringList() << text("A") << text("B") << text("C"));
        for (int row = 0; row < 3; ++row) {
            for (int column = 0; column < 3; ++column)
                table->setItem(row, column, new QTableWidgetItem(text("cell")));
        }
    }

    void addContainers()
    {
        auto* tabs = add("tabs", new QTabBar);
        auto* box = add("toolBox", new QToolBox);
        const char* const pages[] = {"First", "Second"};
        for (const char* page : pages) {
            tabs->addTab(text(page));
            box->addItem(new QLabel(text(page)), text(page));
            auto* dock = new QDockWidget(text(page), this);
            dock->setObjectName(text("dock") + text(page));
            dock->setWidget(new QLabel(text(page)));
            addDockWidget(Qt::RightDockWidgetArea, dock);
        }
        tabifyDockWidget(findChild<QDockWidget*>(text("dockFirst")), findChild<QDockWidget*>(text("dockSecond")));
        statusBar()->setObjectName(text("status"));
        statusBar()->showMessage(text("Ready"));
    }

    void addMenus()
    {
        menuBar()->setObjectName(text("bar"));
        QMenu* file = menuBar()->addMenu(text("&File"));
        file->addAction(text("&Save"));
        file->addMenu(text("Send"))->addAction(text("Mail"));
        file->addAction(text("Wrap"))->setCheckable(true);
        popup = new QMenu(this);
        popup->setObjectName(text("popup"));
        popup->addAction(text("Copy"));
        popup->addMenu(text("More"))->addAction(text("Paste"));
        auto* opener = add("opener", new QPushButton(text("Open")));
        host.onSignal(opener, SIGNAL(clicked()), [this] { popup->popup(QPoint(900, 800)); });
        host.onRequest(text("popUp"), [this] { popup->popup(QPoint(900, 800)); });
        host.onRequest(text("closePopup"), [this] { popup->close(); });
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
    usage->setObjectName(text("usage"));
    host.onRequest(text("takeStock"), [usage] { takeStock(usage); });
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}

#include "leakhost.moc"
