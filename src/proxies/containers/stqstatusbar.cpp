#include "proxies/containers/stqstatusbar.h"

#include "proxy/pseudoproperties.h"

#include <QStatusBar>

namespace {

const proxy::PseudoProperty<const QStatusBar&> pseudoProperties[] = {
    {"currentMessage", [](const QStatusBar& bar) -> QVariant { return bar.currentMessage(); }},
};

} // namespace

QStringList STQStatusBar::pseudoPropertyNames()
{
    return proxy::namesOf(pseudoProperties);
}

QVariant STQStatusBar::pseudoProperty(const char* name, const QVariant&)
{
    return proxy::valueOf(pseudoProperties, name, *static_cast<const QStatusBar*>(checkedWidget("QStatusBar")));
}
