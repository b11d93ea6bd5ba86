// A widgets application that prints, a line each, what its look depends on. Its window has an edit, and a bar that moves.

#include <QApplication>
#include <QFontInfo>
#include <QLineEdit>
#include <QProgressBar>
#include <QStyle>
#include <QVBoxLayout>
#include <QtCore/QDate>
#include <QtCore/QLocale>
#include <QtCore/QTimeLine>

#include <cstdio>

namespace {

const int BarMilliseconds = 1000;

void print(const char* name, const QString& value)
{
    std::printf("%s: %s\n", name, value.toUtf8().constData());
}

void printLook(const QWidget& window)
{
    const QFontInfo font(QApplication::font());
    print("style", QApplication::style()->objectName());
    print("font", font.family());
    print("pixels", QString::number(font.pixelSize()));
    print("resolution", QString::number(window.logicalDpiX()));
    print("caret", QString::number(QApplication::cursorFlashTime()));
    print("fading", QString::number(QApplication::isEffectEnabled(Qt::UI_FadeMenu)));
    print("locale", QLocale().name());
    print("number", QLocale().toString(1234.5));
    print("date", QLocale().toString(QDate(2020, 5, 1), QLocale::ShortFormat));
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QWidget window;
    window.setObjectName(QString::fromLatin1("look"));
    auto* edit = new QLineEdit(QString::fromLatin1("Roastery"));
    edit->setObjectName(QString::fromLatin1("edit"));
    auto* bar = new QProgressBar;
    bar->setObjectName(QString::fromLatin1("bar"));
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(edit);
    layout->addWidget(bar);
    window.resize(300, 100);
    window.show();
    QTimeLine time(BarMilliseconds);
    time.setLoopCount(0);
    time.setFrameRange(0, 100);
    QObject::connect(&time, SIGNAL(frameChanged(int)), bar, SLOT(setValue(int)));
    time.start();
    printLook(window);
    return QApplication::exec();
}
