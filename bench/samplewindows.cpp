#include "samplewindows.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

#include <map>
#include <utility>

namespace {

QString numbered(const char* text, int number)
{
    return QString::fromLatin1(text).arg(number);
}

QWidget* namedWidget(const QString& name, QWidget* parent)
{
    auto* widget = new QWidget(parent);
    widget->setObjectName(name);
    return widget;
}

void addButton(int index, QWidget* group)
{
    auto* button = new QPushButton(group);
    button->setObjectName(numbered("button%1", index));
}

void addUnnamedButton(int index, QWidget* group)
{
    auto* button = new QPushButton(group);
    button->setText(numbered("Choose &item %1...", index));
}

void addToolButton(int index, QWidget* group)
{
    auto* button = new QToolButton(group);
    auto* action = new QAction(button);
    action->setObjectName(numbered("action%1", index));
    action->setText(numbered("Command %1", index));
    button->addAction(action);
}

void addField(int index, QWidget* group)
{
    const int number = index / 2;
    if (index % 2 == 0) {
        new QLabel(numbered("Field &%1:", number), group);
        return;
    }
    auto* label = qobject_cast<QLabel*>(group->children().isEmpty() ? nullptr : group->children().last());
    auto* edit = new QLineEdit(group);
    edit->setPlaceholderText(numbered("hint %1", number));
    if (label)
        label->setBuddy(edit);
}

void addTwin(int, QWidget* group)
{
    namedWidget(QString::fromLatin1("twin"), group);
}

void fillGroups(QWidget* window, int size, void (*add)(int index, QWidget* group))
{
    const int groupSize = 100;
    QWidget* group = nullptr;
    for (int count = 0, index = 0; count < size; ++count) {
        if (count % groupSize == 0)
            group = namedWidget(numbered("group%1", count / groupSize), window);
        else
            add(index++, group);
    }
}

void fillChains(QWidget* window, int size)
{
    const int levels = 10;
    QWidget* level = window;
    for (int count = 0; count < size; ++count) {
        if (count % levels == 0)
            level = namedWidget(numbered("chain%1", count / levels), window);
        else if (count % levels == levels - 1)
            namedWidget(QString::fromLatin1("leaf"), level);
        else
            level = namedWidget(numbered("level%1", count % levels), level);
    }
}

QWidget* makeWindow(Sample sample, int size)
{
    auto* window = new QWidget; // kept, see sampleWindow()
    window->setAttribute(Qt::WA_DontShowOnScreen);
    window->setWindowTitle(QString::fromLatin1("Sample"));
    window->setObjectName(QString::fromLatin1("window"));
    switch (sample) {
    case Sample::Named:
        fillGroups(window, size, addButton);
        break;
    case Sample::Nested:
        fillChains(window, size);
        break;
    case Sample::Twins:
        fillGroups(window, size, addTwin);
        break;
    case Sample::Unnamed:
        fillGroups(window, size, addUnnamedButton);
        break;
    case Sample::Fields:
        fillGroups(window, size, addField);
        break;
    case Sample::Actions:
        fillGroups(window, size, addToolButton);
        break;
    }
    return window;
}

} // namespace

QWidget& sampleWindow(Sample sample, int size)
{
    static std::map<std::pair<Sample, int>, QWidget*> windows;
    QWidget*& window = windows[{sample, size}];
    for (const auto& other : windows) {
        if (other.second)
            other.second->hide();
    }
    if (!window)
        window = makeWindow(sample, size);
    window->show();
    return *window;
}
