#include "namedwindow.h"

#include "fuzzing.h"
#include "identify/objectname.h"

#include <QAction>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

namespace {

void showWindow(QWidget* window, const char* title, const char* name)
{
    window->setWindowTitle(QLatin1String(title));
    window->setObjectName(QLatin1String(name));
    window->resize(200, 200);
    window->setUpdatesEnabled(false); // nobody looks
    window->show();
}

} // namespace

NamedWindow::NamedWindow()
    : root(new QWidget(new QWidget, Qt::Window)) // names above the window do not count
{
    root->parentWidget()->setObjectName(QLatin1String("outer"));
    const int levels = 3;
    addLevel(root, levels);
    auto* dialog = new QInputDialog(root);
    dialog->setWindowTitle(QLatin1String("Input"));
    dialog->setLabelText(QLatin1String("Label"));
    dialog->show();
    below.append(root->findChildren<QWidget*>().mid(below.size()));
    showWindow(root, "Named window", "main");
    showWindow(new QWidget, "Named window 2", "other");
    auto* modal = new QWidget;
    modal->setWindowModality(Qt::ApplicationModal);
    showWindow(modal, "Modal: 1", "modal");
}

template <class Widget>
QWidget* NamedWindow::add(QWidget* parent)
{
    auto* widget = new Widget(parent);
    below.append(widget);
    return widget;
}

void NamedWindow::addLevel(QWidget* parent, int levels)
{
    if (levels == 0)
        return;
    add<QPushButton>(parent);
    QWidget* button = add<QToolButton>(parent);
    button->addAction(new QAction(button));
    QWidget* box = add<QWidget>(parent);
    addLevel(box, levels - 1);
    add<QLabel>(parent);
}

void NamedWindow::rename(const QStringList& lines)
{
    for (int i = 0; i < below.size(); ++i)
        rename(below.at(i), lines.value(i));
    const QString windowLine = lines.value(static_cast<int>(below.size()));
    root->setObjectName(windowLine.isEmpty() ? QString(QLatin1String("main")) : windowLine.mid(1));
    root->setWindowTitle(lines.value(static_cast<int>(below.size()) + 1, QLatin1String("Named window")));
}

void NamedWindow::rename(QWidget* widget, const QString& line)
{
    const QString kind = line.left(1);
    const bool derived = kind == QLatin1String("#");
    widget->setObjectName(derived || line.isEmpty() ? QString() : line.mid(1));
    const QString label = derived ? line.mid(1) : QString();
    if (auto* button = qobject_cast<QPushButton*>(widget))
        button->setText(label);
    if (!widget->actions().isEmpty())
        widget->actions().first()->setObjectName(label);
    widget->setVisible(kind != QLatin1String("-"));
}

QString NamedWindow::description() const
{
    QStringList names;
    for (const QWidget* widget : below)
        names.append(QLatin1String(widget->metaObject()->className()) + QLatin1Char(' ')
            + fuzzing::printable(identify::getName(widget)) + QLatin1String(widget->isVisible() ? "" : " (hidden)"));
    return names.join(QLatin1String("\n"));
}
