#include "proxies/views/walkguard.h"

#include "compat/platform.h"

#include <QtCore/QAbstractItemModel>

namespace views {

namespace {

// Half a second of processor time in all, so that an endless walk is over within a second. Processor time, since on a busy
// machine a walk takes longer without doing more.
const long long periodMilliseconds = 250;
const int maximumIdlePeriods = 2;

} // namespace

WalkGuard::WalkGuard(const QAbstractItemModel* model)
    : periodBegin(compat::processorMilliseconds())
{
    if (model)
        connect(model, SIGNAL(rowsInserted(QModelIndex, int, int)), SLOT(countRows(QModelIndex, int, int)));
}

bool WalkGuard::visitAndDetectEndlessWalk(const QModelIndex& item, bool isNearer)
{
    if (circle.visitAndDetectCycle(item))
        return true;
    gained += isNearer ? 1 : 0;
    if (compat::processorMilliseconds() - periodBegin < periodMilliseconds)
        return false;
    idlePeriods = gained > 0 ? 0 : idlePeriods + 1;
    gained = 0;
    periodBegin = compat::processorMilliseconds();
    return idlePeriods == maximumIdlePeriods;
}

void WalkGuard::countRows(const QModelIndex&, int first, int last)
{
    gained -= qint64(last) - first + 1;
}

} // namespace views
