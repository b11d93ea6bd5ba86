// Two windows, one of which Windows does not activate any more after "do refuse"; see test_foreground.py.

#include "testhost.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <windows.h>

namespace {

HWND refused = nullptr;

// A hook of the thread, which Windows asks before it activates a window.
LRESULT CALLBACK allowActivation(int code, WPARAM window, LPARAM details)
{
    if (code == HCBT_ACTIVATE && reinterpret_cast<HWND>(window) == refused)
        return 1;
    return CallNextHookEx(nullptr, code, window, details);
}

QWidget* addWindow(TestHost& host, const char* name, const char* title, const QRect& place)
{
    auto* window = new QWidget;
    window->setObjectName(QLatin1String(name));
    window->setWindowTitle(QLatin1String(title));
    auto* layout = new QVBoxLayout(window);
    auto* button = new QPushButton(QLatin1String("Press"));
    button->setObjectName(QLatin1String("press"));
    layout->addWidget(button);
    auto* edit = new QLineEdit;
    edit->setObjectName(QString::fromLatin1("%1Edit").arg(QLatin1String(name)));
    layout->addWidget(edit);
    host.journalSignal(button, SIGNAL(clicked()), QString::fromLatin1("clicked %1").arg(QLatin1String(name)));
    window->setGeometry(place);
    window->show();
    return window;
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, [](TestHost& host) {
        QWidget* const other = addWindow(host, "other", "Other", QRect(500, 60, 300, 200));
        addWindow(host, "main", "Main", QRect(60, 60, 300, 200));
        host.onRequest(QLatin1String("refuse"), [other] {
            refused = reinterpret_cast<HWND>(other->winId());
            SetWindowsHookEx(WH_CBT, allowActivation, nullptr, GetCurrentThreadId());
        });
    });
}
