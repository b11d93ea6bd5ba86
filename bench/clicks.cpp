// A click until the slot behind it has run. The buttons take turns, since a cursor that is there already is not moved.
// The floor is what a click is made of, done with Qt's own calls: the window raised and active, its events
// handled, the cursor moved, the widget under it looked up, press and release posted and delivered.

#include "onscreen.h"
#include "pairs.h"
#include "proxy/stapplicationproxy.h"

#include <QCheckBox>
#include <QCursor>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPushButton>

namespace {

// Two buttons, each of them checked by a click and unchecked by the next.
struct ButtonWindow
{
    ButtonWindow()
    {
        auto* layout = new QHBoxLayout(&window);
        for (QPushButton*& button : buttons) {
            button = new QPushButton(QString::fromLatin1("Press"));
            button->setCheckable(true);
            layout->addWidget(button);
        }
        window.setWindowTitle(QString::fromLatin1("Clicks"));
        showActive(window);
    }

    QPushButton* nextButton()
    {
        turn = 1 - turn;
        return buttons[turn];
    }

    QWidget window;
    QPushButton* buttons[2] = {};
    int turn = 0;
    STApplicationProxy registry;
};

ButtonWindow& buttonWindow()
{
    static auto* const window = new ButtonWindow; // kept: a static would outlive the application
    return *window;
}

void post(QEvent::Type type, QWidget* target, const QPoint& position, Qt::MouseButtons buttons)
{
    QCoreApplication::postEvent(target,
        new QMouseEvent(type, target->mapFromGlobal(position), position, Qt::LeftButton, buttons, Qt::NoModifier));
}

void clickByQt(QPushButton* button)
{
    button->window()->activateWindow();
    button->window()->raise();
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
    const QPoint position = centerOf(*button);
    QCursor::setPos(position);
    QWidget* target = QApplication::widgetAt(position);
    post(QEvent::MouseButtonPress, target, position, Qt::LeftButton);
    post(QEvent::MouseButtonRelease, target, position, Qt::NoButton);
}

template <class Click>
void clickUntilSeen(Click click)
{
    QPushButton* const button = buttonWindow().nextButton();
    const bool before = button->isChecked();
    click(button);
    processEventsUntil([button, before] { return button->isChecked() != before; });
}

Measured makeOurs(int)
{
    buttonWindow();
    return [] {
        clickUntilSeen(
            [](QPushButton* button) { buttonWindow().registry.activate(button, QString(), QVariant(), QVariant()); });
    };
}

Measured makeFloor(int)
{
    buttonWindow();
    return [] { clickUntilSeen(clickByQt); };
}

} // namespace

void registerClicks()
{
    registerPair("click", Clock::Wall, {1}, makeOurs, makeFloor);
}
