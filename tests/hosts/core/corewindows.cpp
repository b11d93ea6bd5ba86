#include "corewindows.h"

#include "testhost.h"

#include <QPushButton>

QWidget* addWindow(const char* name, const char* title, const QPoint& position)
{
    auto* window = named(new QWidget, name);
    window->setWindowTitle(latin1(title));
    window->move(position);
    new QVBoxLayout(window);
    return window;
}

QWidget* addFrame(QWidget* parent, const char* name)
{
    auto* frame = add(parent, named(new QWidget, name));
    new QVBoxLayout(frame);
    return frame;
}

QPushButton* addButton(TestHost& host, QWidget* parent, const char* name)
{
    auto* button = add(parent, named(new QPushButton(latin1(name)), name));
    host.journalSignal(button, SIGNAL(clicked()), latin1("clicked"));
    return button;
}
