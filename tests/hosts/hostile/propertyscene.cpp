#include "propertyscene.h"

#include "commonfaults.h"
#include "scenes.h"

#include <QLineEdit>
#include <QMainWindow>

PropertyTrap::PropertyTrap(Stage& wantedStage)
    : stage(wantedStage)
{
    setMinimumHeight(30);
}

int PropertyTrap::dialog() const
{
    stage.nest(Place::Fragile, [this] { runDialog(stage, nullptr); });
    return 1;
}

int PropertyTrap::loop() const
{
    stage.nest(Place::Fragile, [this] { handleEvents(stage, nullptr); });
    return 2;
}

int PropertyTrap::deadly() const
{
    if (stage.mayDestroy())
        delete this;
    return 3;
}

PropertyTrap::Mood PropertyTrap::deadlyMood() const
{
    if (stage.mayDestroy())
        delete this;
    return Bad;
}

QString PropertyTrap::windowless() const
{
    const QString text = objectName();
    if (stage.mayDestroy())
        stage.destroy(stage.window());
    return text;
}

void buildProperties(Stage& stage, QWidget* centre)
{
    for (const char* name : {"trap1", "trap2", "trap3"})
        put(centre, new PropertyTrap(stage), name);
    put(centre, new QLineEdit, "line");
    put(centre, new QLineEdit, "line");
    // Names that are formats, paths and numbers.
    for (const char* name : {"%s%s%n", "a/b", "100%", "\xe4\xf6", " "})
        put(centre, new QWidget, "")->setObjectName(QString::fromLatin1(name));
}
