// Tab bars of many kinds; see tests/protocol/test_tab_bars.py.

#include "deleteonrestore.h"
#include "testhost.h"

#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>
#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>

namespace {

// A tab bar whose tabs have no size.
class FlatTabBar : public QTabBar
{
    Q_OBJECT

protected:
    QSize tabSizeHint(int) const override { return QSize(0, 0); }
    QSize minimumTabSizeHint(int) const { return QSize(0, 0); }
};

struct Page
{
    const char* text;
    const char* toolTip;
};

void prepare(TestHost& host, QTabBar* bar, const char* name, std::initializer_list<Page> pages)
{
    bar->setObjectName(QLatin1String(name));
    for (const Page& page : pages)
        bar->setTabToolTip(bar->addTab(QLatin1String(page.text)), QLatin1String(page.toolTip));
    host.journalValue(bar, SIGNAL(currentChanged(int)), QLatin1String("current"));
    host.journalInput(bar);
}

QTabBar* add(TestHost& host, QWidget* window, const char* name, std::initializer_list<Page> pages)
{
    auto* bar = new QTabBar;
    bar->setExpanding(false);
    prepare(host, bar, name, pages);
    window->layout()->addWidget(bar);
    return bar;
}

// "center BAR INDEX X,Y" for every tab, in coordinates of the bar.
void journalCenters(TestHost& host, const QWidget* window)
{
    const QList<QTabBar*> bars = window->findChildren<QTabBar*>();
    for (const QTabBar* bar : bars) {
        for (int i = 0; i < bar->count(); ++i) {
            const QRect rect = bar->tabRect(i);
            host.journal(QString::fromLatin1("center %1 %2 %3,%4")
                             .arg(bar->objectName())
                             .arg(i)
                             .arg((rect.left() + rect.right()) / 2)
                             .arg((rect.top() + rect.bottom()) / 2));
        }
    }
}

QTabBar* addScrolled(TestHost& host, QWidget* window)
{
    auto* bar = add(host, window, "scrolled", {{"Number 0", ""}});
    for (int i = 1; i < 20; ++i)
        bar->addTab(QString::fromLatin1("Number %1").arg(i));
    bar->setUsesScrollButtons(true);
    bar->setFixedWidth(300);
    return bar;
}

// A bar whose tab has no size.
void addFlat(TestHost& host, QWidget* window)
{
    auto* flat = new FlatTabBar;
    flat->setExpanding(false);
    prepare(host, flat, "flat", {{"Sizeless", ""}});
    flat->setFixedSize(200, 30);
    window->layout()->addWidget(flat);
}

void addPages(TestHost& host, QWidget* window)
{
    auto* pages = new QTabWidget;
    pages->setObjectName(QLatin1String("pages"));
    pages->addTab(new QWidget, QLatin1String("Summary"));
    pages->addTab(new QWidget, QLatin1String("Details"));
    pages->setMinimumHeight(60);
    host.journalValue(pages, SIGNAL(currentChanged(int)), QLatin1String("current"));
    window->layout()->addWidget(pages);
}

void answerRequests(TestHost& host, QWidget* window, QTabBar* scrolled, QTabBar* doomed)
{
    host.onRequest(QLatin1String("centers"), [&host, window] { journalCenters(host, window); });
    host.onRequest(QLatin1String("reportCursor"), [&host, scrolled] {
        const QPoint position = scrolled->mapFromGlobal(QCursor::pos());
        host.journal(QString::fromLatin1("cursor %1,%2").arg(position.x()).arg(position.y()));
    });
    host.onRequest(QLatin1String("scrollToEnd"), [scrolled] { scrolled->setCurrentIndex(19); });
    host.onRequest(QLatin1String("noneCurrent"), [window] {
        auto* bar = window->findChild<QTabBar*>(QLatin1String("menus"));
        while (bar->count() > 0)
            bar->removeTab(0);
    });
    host.onRequest(QLatin1String("minimizeDoomed"), [window, doomed] {
        (new DeleteOnRestore(doomed))->setParent(window);
        window->showMinimized();
    });
}

void build(TestHost& host)
{
    auto* window = new QWidget;
    window->setObjectName(QLatin1String("tabs"));
    window->setWindowTitle(QLatin1String("Tabs"));
    new QVBoxLayout(window);

    add(host, window, "menus", {{"&File", "Files"}, {"&Edit", "Cut & &paste"}});
    add(host, window, "same", {{"Other", ""}, {"Page", ""}, {"&Page", ""}, {"Drag && &drop", ""}, {"", ""}});
    add(host, window, "partly", {{"Open", ""}, {"Locked", ""}, {"Saved", ""}})->setTabEnabled(1, false);
    add(host, window, "disabled", {{"One", ""}, {"Two", ""}})->setEnabled(false);
    add(host, window, "hidden", {{"One", ""}, {"Two", ""}})->hide();
    add(host, window, "empty", {})->setFixedSize(200, 30);
    add(host, window, "vertical", {{"North", ""}, {"South", ""}})->setShape(QTabBar::RoundedWest);
    auto* scrolled = addScrolled(host, window);

    addFlat(host, window);
    addPages(host, window);
    auto* doomed = add(host, window, "doomed", {{"One", ""}, {"Two", ""}});
    answerRequests(host, window, scrolled, doomed);
    host.onSignal(doomed, SIGNAL(currentChanged(int)), [doomed] { doomed->deleteLater(); });
    // Aside, there is room on the screen for what is beside the window, on its left, too.
    const bool aside = QCoreApplication::arguments().contains(QLatin1String("--aside"));
    window->move(aside ? 600 : 60, 60);
    window->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}

#include "tabhost.moc"
