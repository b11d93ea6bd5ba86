#include "proxies/clickcommand.h"

#include "proxy/sterror.h"

namespace proxies {

namespace {

struct Row
{
    const char* words;
    ClickCommand command;
};

const Row rows[] = {
    {"MousePress:RightButton", {proxy::MouseCommandType::Press, Qt::RightButton}},
    {"MousePress:LeftButton", {proxy::MouseCommandType::Press, Qt::LeftButton}},
    {"MouseRelease:RightButton", {proxy::MouseCommandType::Release, Qt::RightButton}},
    {"MouseRelease:LeftButton", {proxy::MouseCommandType::Release, Qt::LeftButton}},
    {"MouseClick:RightButton", {proxy::MouseCommandType::Click, Qt::RightButton}},
    {"MouseClick:LeftButton", {proxy::MouseCommandType::Click, Qt::LeftButton}},
    {"MouseDoubleClick:RightButton", {proxy::MouseCommandType::DoubleClick, Qt::RightButton}},
    {"MouseDoubleClick:LeftButton", {proxy::MouseCommandType::DoubleClick, Qt::LeftButton}},
};

} // namespace

ClickCommand clickCommand(const QString& text, const char* ending)
{
    for (const Row& row : rows) {
        if (text == QLatin1String(row.words) + QLatin1String(ending))
            return row.command;
    }
    proxy::raiseError("Invalid string value");
}

} // namespace proxies
