// Every kind of button, each journalling its clicks; see tests/protocol/test_buttons.py.

#include "testhost.h"

#include <QCheckBox>
#include <QCommandLinkButton>
#include <QGroupBox>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

template <class Button>
Button* add(TestHost& host, QWidget* window, const char* name, const char* text)
{
    auto* button = new Button;
    button->setObjectName(QLatin1String(name));
    button->setText(QLatin1String(text));
    window->layout()->addWidget(button);
    host.journalSignal(button, SIGNAL(clicked()), QLatin1String("clicked"));
    host.journalValue(button, SIGNAL(toggled(bool)), QLatin1String("toggled"));
    host.journalInput(button);
    return button;
}

QGroupBox* addBox(TestHost& host, QWidget* window, const char* name)
{
    auto* box = new QGroupBox(QLatin1String("Group"));
    box->setObjectName(QLatin1String(name));
    box->setMinimumHeight(40);
    window->layout()->addWidget(box);
    host.journalValue(box, SIGNAL(toggled(bool)), QLatin1String("toggled"));
    host.journalInput(box);
    return box;
}

void addSplit(TestHost& host, QWidget* window)
{
    auto* split = add<QToolButton>(host, window, "split", "Split");
    split->setPopupMode(QToolButton::MenuButtonPopup);
    split->setFixedSize(120, 40);
    auto* menu = new QMenu(split);
    menu->setObjectName(QLatin1String("splitMenu"));
    menu->addAction(QLatin1String("Entry"));
    host.journalSignal(menu, SIGNAL(aboutToShow()), QLatin1String("shown"));
    split->setMenu(menu);
}

void addBoxes(TestHost& host, QWidget* window)
{
    addBox(host, window, "checkableBox")->setCheckable(true);
    addBox(host, window, "plainBox");
    const struct
    {
        const char* name;
        Qt::Alignment alignment;
        bool flat;
    } titles[] = {{"centeredBox", Qt::AlignHCenter, false}, {"rightBox", Qt::AlignRight, false},
        {"flatBox", Qt::AlignLeft, true}, {"flatRightBox", Qt::AlignRight, true}};
    for (const auto& title : titles) {
        auto* box = addBox(host, window, title.name);
        box->setCheckable(true);
        box->setAlignment(title.alignment);
        box->setFlat(title.flat);
    }
}

void build(TestHost& host)
{
    auto* window = new QWidget;
    window->setObjectName(QLatin1String("buttons"));
    window->setWindowTitle(QLatin1String("Buttons"));
    new QVBoxLayout(window);

    add<QPushButton>(host, window, "push", "&Save");
    add<QPushButton>(host, window, "ampersands", "Drag && &drop");
    add<QPushButton>(host, window, "disabled", "Disabled")->setEnabled(false);
    add<QPushButton>(host, window, "toggle", "Toggle")->setCheckable(true);
    add<QRadioButton>(host, window, "first", "First");
    add<QRadioButton>(host, window, "second", "Second")->setMinimumWidth(400);
    add<QCheckBox>(host, window, "check", "Check")->setMinimumWidth(400);
    add<QCommandLinkButton>(host, window, "link", "Link");
    add<QToolButton>(host, window, "tool", "Tool");

    addSplit(host, window);

    addBoxes(host, window);
    window->move(60, 60);
    window->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
