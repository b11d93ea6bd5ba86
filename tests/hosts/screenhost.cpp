// Widgets for the mouse on a desktop of several screens and scales; see tests/protocol/test_screens.py. "do place" puts
// the window to where the option "--place X,Y" says.

#include "testhost.h"

#include <QComboBox>
#include <QLineEdit>
#include <QMouseEvent>
#include <QSlider>
#include <QVBoxLayout>
#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>

namespace {

// Where a mouse event is in its window and on the desktop, as the Qt major spells it. Qt 4 knows no place in the window.
template <class Event>
auto windowPosition(const Event* event, int) -> decltype(event->scenePosition())
{
    return event->scenePosition();
}

template <class Event>
auto windowPosition(const Event* event, long) -> decltype(event->windowPos())
{
    return event->windowPos();
}

template <class Event>
QPointF windowPosition(const Event*, ...)
{
    return QPointF(-1, -1);
}

template <class Event>
auto desktopPosition(const Event* event, int) -> decltype(event->globalPosition())
{
    return event->globalPosition();
}

template <class Event>
auto desktopPosition(const Event* event, long) -> decltype(QPointF(event->globalPos()))
{
    return event->globalPos();
}

// Journals the positions of presses and releases as "at WIDGET LOCAL WINDOW DESKTOP".
class PositionJournal : public QObject
{
public:
    PositionJournal(TestHost& testHost, QWidget* watched)
        : QObject(watched)
        , host(testHost)
    {
        watched->installEventFilter(this);
        watched->setAttribute(Qt::WA_NoMousePropagation);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseButtonRelease)
            return false;
        const auto* mouse = static_cast<QMouseEvent*>(event);
        const QPointF window = windowPosition(mouse, 0);
        const QPointF desktop = desktopPosition(mouse, 0);
        host.journal(QString::fromLatin1("at %1 %2,%3 %4,%5 %6,%7")
                         .arg(watched->objectName())
                         .arg(mouse->pos().x())
                         .arg(mouse->pos().y())
                         .arg(window.x())
                         .arg(window.y())
                         .arg(desktop.x())
                         .arg(desktop.y()));
        return false;
    }

private:
    TestHost& host;
};

QWidget* canvas(TestHost& host, QWidget* parent, const char* name, const QSize& size)
{
    auto* widget = new QWidget(parent);
    widget->setObjectName(QLatin1String(name));
    widget->setFixedSize(size);
    host.journalInput(widget);
    new PositionJournal(host, widget);
    return widget;
}

QPoint place()
{
    const QStringList arguments = QCoreApplication::arguments();
    const int option = arguments.indexOf(QLatin1String("--place"));
    const QStringList numbers = option < 0 ? QStringList() : arguments.at(option + 1).split(QLatin1Char(','));
    return QPoint(numbers.value(0).toInt(), numbers.value(1).toInt());
}

// A window of its own to the windowing system, with a widget in it. Only for one screen: Qt itself does not know where
// such a window is when it has come to a screen of another scale.
void addNative(TestHost& host, QWidget* window)
{
    if (!QCoreApplication::arguments().contains(QLatin1String("--native")))
        return;
    QWidget* native = canvas(host, window, "native", QSize(200, 40));
    window->layout()->addWidget(native);
    native->winId();
    canvas(host, native, "inner", QSize(50, 20))->move(30, 10);
}

void build(TestHost& host)
{
    auto* window = new QWidget(nullptr, Qt::FramelessWindowHint);
    window->setObjectName(QLatin1String("window"));
    window->setWindowTitle(QLatin1String("Screens"));
    auto* layout = new QVBoxLayout(window);
    layout->setContentsMargins(7, 5, 0, 3);
    layout->setSizeConstraint(QLayout::SetFixedSize); // on a screen of another scale, too

    layout->addWidget(canvas(host, window, "canvas", QSize(200, 60)));
    addNative(host, window);
    auto* slider = new QSlider(Qt::Horizontal);
    slider->setObjectName(QLatin1String("slider"));
    slider->setRange(0, 10);
    layout->addWidget(slider);
    auto* combo = new QComboBox;
    combo->setObjectName(QLatin1String("combo"));
    combo->addItems(QString::fromLatin1("one two three").split(QLatin1Char(' ')));
    layout->addWidget(combo);
    auto* edit = new QLineEdit;
    edit->setObjectName(QLatin1String("edit"));
    layout->addWidget(edit);
    // Only when it is shown: before, Qt reads a place on another screen in the scale of the first one.
    host.onRequest(QLatin1String("place"), [window] { window->move(place()); });
    window->move(60, 60);
    window->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
