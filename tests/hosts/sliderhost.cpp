// Sliders whose handle a drag does not reach, or that end under the drag; see tests/protocol/test_slider_drags.py.

#include "testhost.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>
#include <QTimer>

namespace {

QSlider* slider(TestHost& host, QWidget* window, const char* name, int value)
{
    auto* widget = new QSlider(Qt::Horizontal);
    widget->setObjectName(QLatin1String(name));
    widget->setFixedWidth(200);
    widget->setRange(0, 10);
    widget->setValue(value);
    host.journalInput(widget);
    host.journalSignal(widget, SIGNAL(sliderPressed()), QLatin1String("pressed"));
    host.journalSignal(widget, SIGNAL(sliderReleased()), QLatin1String("released"));
    window->layout()->addWidget(widget);
    return widget;
}

QWidget* window(const char* name, const QPoint& position)
{
    auto* window = new QWidget(nullptr, Qt::FramelessWindowHint);
    window->setObjectName(QLatin1String(name));
    window->setWindowTitle(QLatin1String(name));
    auto* layout = new QHBoxLayout(window);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    window->move(position);
    return window;
}

QLabel* neighbour(TestHost& host)
{
    auto* label = new QLabel(QLatin1String("neighbour"));
    label->setObjectName(QLatin1String("neighbour"));
    label->setFixedWidth(300);
    host.journalInput(label);
    return label;
}

void build(TestHost& host)
{
    // To the right of a slider from right to left: another widget, and nothing.
    auto* crowded = window("Crowded", QPoint(100, 100));
    crowded->setLayoutDirection(Qt::RightToLeft);
    crowded->layout()->addWidget(neighbour(host));
    slider(host, crowded, "crowded", 0);
    crowded->show();

    auto* lonely = window("Lonely", QPoint(100, 300));
    lonely->setLayoutDirection(Qt::RightToLeft);
    slider(host, lonely, "lonely", 0);
    lonely->show();

    // Closes the window when its handle is pressed, soon after, or at once.
    auto* doomed = window("Doomed", QPoint(100, 500));
    auto* timer = new QTimer(doomed);
    timer->setSingleShot(true);
    host.onSignal(slider(host, doomed, "doomed", 0), SIGNAL(sliderPressed()), [timer] { timer->start(0); });
    host.onSignal(timer, SIGNAL(timeout()), [doomed] { delete doomed; });
    doomed->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
