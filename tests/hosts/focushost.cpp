// Widgets that a click gives the focus to, or not; see tests/protocol/test_mouse.py and test_entry_texts.py.

#include "testhost.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QVBoxLayout>

namespace {

QLabel* add(TestHost& host, QWidget* window, const QString& name)
{
    auto* label = new QLabel(name);
    label->setObjectName(name);
    window->layout()->addWidget(label);
    host.journalInput(label);
    return label;
}

// Another window is active for a moment, as a notice that nobody has asked for.
void showNotice()
{
    auto* notice = new QWidget;
    notice->setAttribute(Qt::WA_DeleteOnClose);
    notice->setGeometry(500, 500, 100, 100);
    notice->show();
    while (!notice->isActiveWindow()) {
        notice->activateWindow();
        QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
    }
    const int milliseconds = 100;
    QTimer::singleShot(milliseconds, notice, SLOT(close()));
}

void build(TestHost& host)
{
    auto* window = new QWidget;
    window->setObjectName(QLatin1String("window"));
    window->setWindowTitle(QLatin1String("Focus"));
    new QVBoxLayout(window);
    auto* edit = new QLineEdit;
    edit->setObjectName(QLatin1String("edit"));
    window->layout()->addWidget(edit);
    host.onSignal(edit, SIGNAL(textEdited(QString)), [edit] {
        if (edit->text() == QLatin1String("A"))
            showNotice();
    });

    const struct
    {
        const char* name;
        Qt::FocusPolicy policy;
    } kinds[] = {{"none", Qt::NoFocus}, {"tab", Qt::TabFocus}, {"click", Qt::ClickFocus}, {"strong", Qt::StrongFocus}};
    for (const auto& kind : kinds) {
        QLabel* widget = add(host, window, QLatin1String(kind.name));
        widget->setFocusPolicy(kind.policy);
        // Has no focus of its own.
        add(host, window, QLatin1String(kind.name) + QLatin1String("Title"))->setFocusProxy(widget);
    }
    window->move(60, 60);
    window->show();
    edit->setFocus();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
