#include "scenes.h"

#include <QAction>
#include <QButtonGroup>
#include <QCheckBox>
#include <QCommandLinkButton>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>

namespace {

// A button of the application's own, right below the abstract class.
class FlatButton : public QAbstractButton
{
public:
    FlatButton()
    {
        setCheckable(true);
        setMinimumSize(80, 20);
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), isChecked() ? Qt::red : Qt::gray); }
};

QToolButton* toolButton(QWidget* parent, const char* name, QToolButton::ToolButtonPopupMode mode)
{
    auto* button = put(parent, new QToolButton, name);
    auto* menu = new QMenu(button);
    menu->addAction(words("Cut"));
    menu->addAction(words("Copy"))->setCheckable(true);
    button->setMenu(menu);
    button->setPopupMode(mode);
    button->setText(words("Tool"));
    return button;
}

// Adds the things that the application does to its buttons while they are used.
void addTricks(Stage& stage, QWidget* centre, QWidget* group)
{
    const QPointer<QWidget> guardedCentre(centre);
    const QPointer<QWidget> guardedGroup(group);
    stage.addTrick([=, &stage](QObject*) {
        if (guardedGroup)
            put(guardedGroup, new QRadioButton(words("new")), "push")->setChecked(stage.chance.oneIn(2));
    });
    stage.addTrick([=](QObject*) {
        if (!guardedCentre)
            return;
        const QList<QMenu*> menus = guardedCentre->findChildren<QMenu*>();
        for (QMenu* menu : menus)
            menu->clear();
    });
    stage.addTrick([=](QObject* sender) {
        if (sender->inherits("QAbstractButton"))
            static_cast<QAbstractButton*>(sender)->setCheckable(false);
    });
}

} // namespace

void buildButtons(Stage& stage, QWidget* centre)
{
    put(centre, new QPushButton(words("&Push")), "push");
    put(centre, new QPushButton(words("Apply to all")), "");
    put(centre, new QPushButton(words("Check")), "checkable")->setCheckable(true);
    put(centre, new QCheckBox(words("Check")), "check");
    put(centre, new QCheckBox(words("Tri")), "tristate")->setTristate(true);
    auto* group = put(centre, new QGroupBox(words("Group")), "group");
    group->setCheckable(true);
    for (const char* name : {"radio1", "radio2", "radio3"})
        put(group, new QRadioButton(words(name)), name);
    auto* exclusive = new QButtonGroup(centre);
    auto* first = put(centre, new FlatButton, "flat1");
    exclusive->addButton(first);
    exclusive->addButton(put(centre, new FlatButton, "flat2"));
    toolButton(centre, "menuButton", QToolButton::InstantPopup);
    toolButton(centre, "arrowButton", QToolButton::MenuButtonPopup);
    auto* action = new QAction(words("Rinse"), centre);
    action->setObjectName(words("rinse"));
    put(centre, new QToolButton, "")->setDefaultAction(action);
    put(centre, new QCommandLinkButton(words("Command")), "link");
    put(centre, new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel), "box");
    put(centre, new QLabel(words("Label")), "label");
    addTricks(stage, centre, group);
}
