// Widgets that the wheel of a mouse turns, or not; see tests/protocol/test_wheel.py.

#include "latin1.h"
#include "testhost.h"
#include "viewjournal.h"

#include <QLabel>
#include <QListWidget>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <QtCore/QPointer>

namespace {

// The angle of a wheel event, horizontally and vertically: what Qt 5 and later tell, and what Qt 4 does.
template <class Event>
auto angleOf(const Event& event, int) -> decltype(event.angleDelta())
{
    return event.angleDelta();
}

template <class Event>
QPoint angleOf(const Event& event, long)
{
    return event.orientation() == Qt::Horizontal ? QPoint(event.delta(), 0) : QPoint(0, event.delta());
}

class WheelJournal : public QObject
{
public:
    WheelJournal(TestHost& testHost, QWidget* watched)
        : QObject(watched)
        , host(testHost)
    {
        watched->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Wheel) {
            const auto& wheel = static_cast<const QWheelEvent&>(*event);
            const QPoint angle = angleOf(wheel, 0);
            host.journal(QString::fromLatin1("wheel %1 %2,%3 modifiers %4")
                             .arg(watched->objectName())
                             .arg(angle.x())
                             .arg(angle.y())
                             .arg(int(wheel.modifiers())));
        }
        return false;
    }

private:
    TestHost& host;
};

template <class Widget>
Widget* add(TestHost& host, QWidget* parent, const char* name, Widget* widget)
{
    widget->setObjectName(latin1(name));
    parent->layout()->addWidget(widget);
    new WheelJournal(host, widget);
    return widget;
}

void addArea(TestHost& host, QWidget* window)
{
    auto* content = new QWidget;
    content->setObjectName(latin1("content"));
    new QVBoxLayout(content);
    add(host, content, "inner", new QLabel(latin1("inner")))->setMinimumSize(1000, 1500);
    auto* area = add(host, window, "area", new QScrollArea);
    area->setWidget(content);
    area->verticalScrollBar()->setObjectName(latin1("areaBar"));
    area->horizontalScrollBar()->setObjectName(latin1("areaSideBar"));
    area->verticalScrollBar()->setSingleStep(10);
}

void build(TestHost& host)
{
    auto* window = new QWidget;
    window->setObjectName(latin1("window"));
    window->setWindowTitle(latin1("Wheels"));
    new QVBoxLayout(window);
    add(host, window, "slider", new QSlider(Qt::Horizontal))->setValue(50);
    add(host, window, "spin", new QSpinBox)->setMaximum(100000);
    auto* list = add(host, window, "list", new QListWidget);
    for (int i = 0; i < 200; ++i)
        list->addItem(QString::number(i));
    list->verticalScrollBar()->setObjectName(latin1("listBar"));
    addArea(host, window);
    add(host, window, "idle", new QLabel(latin1("idle")));
    add(host, window, "disabled", new QSlider(Qt::Horizontal))->setEnabled(false);
    auto* victim = add(host, window, "victim", new QSlider(Qt::Horizontal));
    const QPointer<QSlider> living(victim);
    afterSignal(host, victim, SIGNAL(valueChanged(int)), [living] { delete living; });
    new WheelJournal(host, window);
    window->setGeometry(60, 60, 400, 600);
    window->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
