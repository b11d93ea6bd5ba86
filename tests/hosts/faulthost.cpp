// An application at work: a timer ticks, and what keeps it from ticking is measured. See
// tests/protocol/test_wire_*.py.

#include "latin1.h"
#include "testhost.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPushButton>
#include <QStringList>
#include <QTableWidget>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <QValidator>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <fstream>
#include <thread>

namespace {

const int tickMilliseconds = 5;

double milliseconds(clockid_t clock)
{
    timespec now = {};
    clock_gettime(clock, &now);
    return double(now.tv_sec) * 1000 + double(now.tv_nsec) / 1e6;
}

// Milliseconds that this thread was ready to run, and other processes had the processors; 0 where Linux does not tell.
double millisecondsWithoutProcessor()
{
    std::ifstream statistics("/proc/thread-self/schedstat");
    double running = 0;
    double waiting = 0;
    statistics >> running >> waiting;
    return waiting / 1e6;
}

// Ticks, and keeps the longest time between two ticks: on the clock, without the time that a busy machine took, and in
// work of this thread alone.
class Pulse : public QObject
{
public:
    Pulse()
        : QObject(qApp)
    {
        setObjectName(latin1("pulse"));
        reset();
        timer.start(tickMilliseconds, this);
    }

    void reset()
    {
        ticks = 0;
        longestGap = longestWork = 0;
        lastTick = elapsed();
        lastWork = milliseconds(CLOCK_THREAD_CPUTIME_ID);
    }

protected:
    void timerEvent(QTimerEvent*) override
    {
        const double now = elapsed();
        const double work = milliseconds(CLOCK_THREAD_CPUTIME_ID);
        longestGap = std::max(longestGap, now - lastTick);
        longestWork = std::max(longestWork, work - lastWork);
        lastTick = now;
        lastWork = work;
        setProperty("ticks", ++ticks);
        setProperty("longestGap", int(longestGap));
        setProperty("longestWork", int(longestWork));
    }

private:
    static double elapsed() { return milliseconds(CLOCK_MONOTONIC) - millisecondsWithoutProcessor(); }

    QBasicTimer timer;
    int ticks = 0;
    double longestGap = 0;
    double longestWork = 0;
    double lastTick = 0;
    double lastWork = 0;
};

// A widget that counts how often a request reads its property.
class Counted : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString large READ large)
    Q_PROPERTY(int reads READ reads)

public:
    // 500,000 characters, a reply of a million.
    QString large() const
    {
        ++count;
        return QString(500000, QLatin1Char('x'));
    }
    int reads() const { return count; }

private:
    mutable int count = 0;
};

// Where there is a validator, a text is entered as a whole, which is fast.
class AnyText : public QValidator
{
public:
    using QValidator::QValidator;
    State validate(QString&, int&) const override { return Acceptable; }
};

void postClick(QWidget* widget)
{
    const QPoint position = widget->rect().center();
    const QEvent::Type types[] = {QEvent::MouseButtonPress, QEvent::MouseButtonRelease};
    for (const QEvent::Type type : types) {
        const Qt::MouseButtons buttons = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        QApplication::postEvent(widget,
            new QMouseEvent(type, position, widget->mapToGlobal(position), Qt::LeftButton, buttons, Qt::NoModifier));
    }
}

// A pad whose mouse release opens a dialog by exec(), so within the command that releases.
class DialogPad : public QWidget
{
public:
    explicit DialogPad(TestHost& testHost)
        : host(testHost)
    {
        setObjectName(latin1("pad"));
        setMinimumSize(200, 60);
    }

protected:
    void mousePressEvent(QMouseEvent*) override { }
    void mouseReleaseEvent(QMouseEvent*) override
    {
        QDialog dialog(this);
        dialog.setObjectName(latin1("question"));
        dialog.setWindowTitle(latin1("Question"));
        QTimer::singleShot(0, &dialog, SLOT(setFocus()));
        host.journal(latin1("dialog opens"));
        dialog.exec();
        host.journal(latin1("dialog closed"));
    }

private:
    TestHost& host;
};

void fill(QWidget* window)
{
    auto* menuBar = new QMenuBar(window);
    menuBar->setObjectName(latin1("menuBar"));
    menuBar->addMenu(latin1("File"))->addAction(latin1("Open"));
    auto* tree = new QTreeWidget;
    tree->setObjectName(latin1("tree"));
    new QTreeWidgetItem(new QTreeWidgetItem(tree, QStringList(latin1("top"))), QStringList(latin1("below")));
    auto* table = new QTableWidget(2, 2);
    table->setObjectName(latin1("table"));
    auto* list = new QListWidget;
    list->setObjectName(latin1("list"));
    list->addItem(latin1("item"));
    const QList<QWidget*> views = QList<QWidget*>() << tree << table << list;
    for (QWidget* view : views) {
        view->setFixedHeight(80);
        window->layout()->addWidget(view);
    }
}

// So many widgets: ten in each other, every fifth with a name, every other fifth a button without one.
void addCrowd(QWidget* window, int count)
{
    const int depth = 10;
    auto* crowd = new QWidget;
    crowd->setFixedHeight(20);
    window->layout()->addWidget(crowd);
    QWidget* parent = crowd;
    for (int i = 0; i < count; ++i) {
        if (i % depth == 0)
            parent = crowd;
        parent = i % 5 == 1 ? new QPushButton(latin1("Crowd"), parent) : new QWidget(parent);
        if (i % 5 == 0)
            parent->setObjectName(latin1("a"));
    }
}

void build(TestHost& host)
{
    auto* window = new QWidget;
    window->setObjectName(latin1("window"));
    window->setWindowTitle(latin1("Faults"));
    auto* layout = new QVBoxLayout(window);
    auto* button = new QPushButton(latin1("Own"));
    button->setObjectName(latin1("own"));
    host.journalSignal(button, SIGNAL(clicked()), latin1("clicked"));
    layout->addWidget(button);
    auto* edit = new QLineEdit;
    edit->setObjectName(latin1("edit"));
    edit->setMaxLength(1000000);
    edit->setValidator(new AnyText(edit));
    edit->setEchoMode(QLineEdit::NoEcho); // what is long to paint is no fault of the wire
    layout->addWidget(edit);
    layout->addWidget(new DialogPad(host));
    auto* counted = new Counted;
    counted->setObjectName(latin1("counted"));
    layout->addWidget(counted);

    const QStringList arguments = QCoreApplication::arguments();
    const int crowd = arguments.indexOf(latin1("--widgets"));
    if (crowd > 0) {
        fill(window);
        addCrowd(window, arguments.at(crowd + 1).toInt());
    }

    auto* pulse = new Pulse;
    host.onRequest(latin1("measure"), [pulse] { pulse->reset(); });
    host.onRequest(latin1("sleep"), [] { std::this_thread::sleep_for(std::chrono::seconds(1)); });
    host.onRequest(latin1("clickOwn"), [button] { postClick(button); });
    host.onRequest(latin1("closeDialog"), [] { QApplication::activeModalWidget()->close(); });
    window->move(60, 60);
    window->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}

#include "faulthost.moc"
