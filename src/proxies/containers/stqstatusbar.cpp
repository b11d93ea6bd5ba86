#include "proxies/containers/stqstatusbar.h"

#include "proxy/pseudoproperties.h"

#include <QStatusBar>

namespace {

const PseudoProperty<const QStatusBar&> pseudoProperties[] = {
    {"currentMessage", [](const QStatusBar& bar) -> QVariant { return bar.currentMessage(); }},
};

} // namespace

QStringList STQStatusBar::pseudoPropertyNames()
{
    return namesOf(pseudoProperties);
}

QVariant STQStatusBar::pseudoProperty(const char* name, const QVariant&)
{
    return valueOf(pseudoProperties, name, *static_cast<const QStatusBar*>(checkedWidget("QStatusBar")));
}
