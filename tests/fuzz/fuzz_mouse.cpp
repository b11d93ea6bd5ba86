// Mouse commands. The input is the command. Rules: the three grammars accept and refuse what the obvious ones do, and a
// command that is played on a widget has it see exactly the events that it names, where it names them.

#include "agent/wiretext.h"
#include "errorof.h"
#include "fuzzing.h"
#include "mouse/naivemouse.h"
#include "proxies/clickcommand.h"
#include "proxies/views/itemmousecommand.h"
#include "proxy/stapplicationproxy.h"
#include "proxy/sterror.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QCursor>
#include <QMouseEvent>
#include <QWidget>

using fuzzing::check;
using fuzzing::printable;

namespace {

// Notes what the mouse does to it, but its moves, which the offscreen platform makes of its own accord.
class Pad : public QWidget
{
public:
    explicit Pad(QWidget* parent)
        : QWidget(parent)
    {
    }

    static QList<naive::SeenEvent> seen;

protected:
    bool event(QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick: {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            seen.append({mouse->type(), int(mouse->button()), int(mouse->buttons()), int(mouse->modifiers()),
                mapToGlobal(mouse->pos())});
            return true;
        }
        case QEvent::ContextMenu: {
            const auto* menu = static_cast<QContextMenuEvent*>(event);
            seen.append({menu->type(), 0, 0, int(menu->modifiers()), menu->globalPos()});
            return true;
        }
        default:
            return QWidget::event(event);
        }
    }
};

QList<naive::SeenEvent> Pad::seen;

class Stage
{
public:
    Stage()
        : window(nullptr)
        , pad(&window)
    {
        const QRect onScreen(100, 100, 200, 150);
        const QRect inside(20, 20, 113, 71);
        window.setGeometry(onScreen);
        pad.setGeometry(inside);
        window.setUpdatesEnabled(false);
        window.show();
    }

    QRect rect() const { return QRect(pad.mapToGlobal(QPoint(0, 0)), pad.size()); }

    QString play(const QString& command)
    {
        Pad::seen.clear();
        const QString error = errorOf([&] { registry.mouseAction(&pad, QString(), command); });
        QCoreApplication::processEvents();
        return error;
    }

    void letGo()
    {
        for (const char* release : {"MouseRelease:LeftButton", "MouseRelease:RightButton", "MouseRelease:MidButton"})
            play(QLatin1String(release));
    }

private:
    STApplicationProxy registry;
    Pad window;
    Pad pad;
};

QString described(const QList<naive::SeenEvent>& events)
{
    QString text;
    for (const naive::SeenEvent& event : events)
        text += QString::fromLatin1("\n%1 %2 %3 %4 at %5 %6")
                    .arg(event.type)
                    .arg(event.button)
                    .arg(event.buttons)
                    .arg(event.modifiers)
                    .arg(event.position.x())
                    .arg(event.position.y());
    return text;
}

void checkGrammars(const QString& command)
{
    const QString detail = printable(command);
    const QString itemError = errorOf([&] { views::itemMouseCommand(command); });
    check(itemError == naive::itemCommandError(command), "the mouse commands of item views", detail);
    for (const char* ending : {":::", ""}) {
        const QString error = errorOf([&] { proxies::clickCommand(command, ending); });
        check(error == naive::clickCommandError(command, QLatin1String(ending)), "the fixed mouse commands", detail);
    }
}

} // namespace

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    static auto* stage = new Stage;
    const QString command = fuzzing::textOf(data, size);
    checkGrammars(command);
    const naive::MouseOutcome expected = naive::mouseOutcome(command, stage->rect());
    const QString error = stage->play(command);
    check(error == expected.error, "the error of a mouse command",
        printable(command) + QLatin1Char('\n') + error + QLatin1Char('\n') + expected.error);
    check(Pad::seen == expected.events, "the events of a mouse command",
        printable(command) + described(Pad::seen) + QLatin1String("\nexpected") + described(expected.events));
    if (command.startsWith(QLatin1String("MousePress")))
        stage->letGo();
    return 0;
}
