// An application whose handlers throw; see tests/protocol/test_exceptions.py.

#include "testhost.h"

#include <QLineEdit>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>
#include <QWidget>
#include <QtCore/QEvent>

#include <climits>
#include <stdexcept>

namespace {

// Throws at the first event of a type.
class Thrower : public QObject
{
public:
    Thrower(QObject* watched, QEvent::Type eventType)
        : QObject(watched)
        , type(eventType)
    {
        watched->installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() != type)
            return false;
        type = QEvent::None;
        throw std::runtime_error("the application's own");
    }

private:
    QEvent::Type type;
};

template <class Widget>
Widget* add(QWidget* window, Widget* widget, const char* name)
{
    widget->setObjectName(QLatin1String(name));
    window->layout()->addWidget(widget);
    return widget;
}

void build(TestHost& host)
{
    auto* window = new QWidget; // the process's
    window->setWindowTitle(QLatin1String("Thrower"));
    new QVBoxLayout(window);
    host.journalInput(add(window, new QLineEdit, "plain"));
    auto* edit = add(window, new QLineEdit, "edit");
    auto* button = add(window, new QPushButton(QLatin1String("Push")), "button");
    host.journalSignal(button, SIGNAL(clicked()), QLatin1String("clicked"));
    auto* table = add(window, new QTableView, "table");
    table->setModel(new QStandardItemModel(3, 2, table));
    host.onSignal(table->selectionModel(), SIGNAL(selectionChanged(QItemSelection, QItemSelection)), [] { throw 1; });
    host.onRequest(QLatin1String("throwAtKey"), [=] { new Thrower(edit, QEvent::KeyPress); });
    host.onRequest(QLatin1String("throwAtPress"), [=] { new Thrower(edit, QEvent::MouseButtonPress); });
    host.onRequest(QLatin1String("throwAtResize"), [=] { new Thrower(window, QEvent::Resize); });
    host.onRequest(QLatin1String("moveFar"), [=] { window->move(INT_MIN, INT_MIN); });
    window->setGeometry(60, 60, 400, 300);
    window->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
