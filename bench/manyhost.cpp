// A window "many" with as many widgets as the argument says, for what a recording costs there: a button "brewButton", a
// field "customerEdit", and below them labels, fields and buttons that can be scrolled.

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QStringList>

namespace {

QWidget* makeWidget(int number)
{
    if (number % 3 == 0)
        return new QLabel(QString::fromLatin1("Label %1:").arg(number));
    if (number % 3 == 1)
        return new QLineEdit(QString::number(number));
    return new QPushButton(QString::fromLatin1("Do %1").arg(number));
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QWidget window;
    window.setObjectName(QLatin1String("many"));
    auto* outer = new QGridLayout(&window);
    auto* button = new QPushButton(QLatin1String("Brew"));
    button->setObjectName(QLatin1String("brewButton"));
    outer->addWidget(button, 0, 0);
    auto* field = new QLineEdit;
    field->setObjectName(QLatin1String("customerEdit"));
    outer->addWidget(field, 0, 1);
    auto* contents = new QWidget;
    auto* inner = new QGridLayout(contents);
    const int size = QCoreApplication::arguments().value(1).toInt();
    const int columns = 30;
    for (int i = 0; i < size; ++i) {
        QWidget* widget = makeWidget(i);
        widget->setObjectName(QString::fromLatin1("widget%1").arg(i));
        inner->addWidget(widget, i / columns, i % columns);
    }
    auto* area = new QScrollArea;
    area->setWidget(contents);
    outer->addWidget(area, 1, 0, 1, 2);
    window.resize(900, 500);
    window.show();
    return QApplication::exec();
}
