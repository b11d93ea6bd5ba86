#include "proxies/clickcommand.h"

#include "proxy/sterror.h"

namespace {

struct Row
{
    const char* words;
    ClickCommand command;
};

const Row rows[] = {
    {"MousePress:RightButton", {MouseCommandType::Press, Qt::RightButton}},
    {"MousePress:LeftButton", {MouseCommandType::Press, Qt::LeftButton}},
    {"MouseRelease:RightButton", {MouseCommandType::Release, Qt::RightButton}},
    {"MouseRelease:LeftButton", {MouseCommandType::Release, Qt::LeftButton}},
    {"MouseClick:RightButton", {MouseCommandType::Click, Qt::RightButton}},
    {"MouseClick:LeftButton", {MouseCommandType::Click, Qt::LeftButton}},
    {"MouseDoubleClick:RightButton", {MouseCommandType::DoubleClick, Qt::RightButton}},
    {"MouseDoubleClick:LeftButton", {MouseCommandType::DoubleClick, Qt::LeftButton}},
};

} // namespace

ClickCommand clickCommand(const QString& text, const char* ending)
{
    for (const Row& row : rows) {
        if (text == QLatin1String(row.words) + QLatin1String(ending))
            return row.command;
    }
    raiseError("Invalid string value");
}
