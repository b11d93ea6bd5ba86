#include "proxy/proxytable.h"

#include "proxies/stqbutton.h"
#include "proxies/stqcheckbox.h"
#include "proxies/stqgroupbox.h"
#include "proxies/stqmenu.h"
#include "proxies/stqmenubar.h"

namespace {

template <class Proxy>
STWidgetProxy* make()
{
    return new Proxy; // the registry's
}

} // namespace

const ProxyTableRow proxyTable[] = {
    {"QWidget", make<STWidgetProxy>},
    {"QLabel", make<STWidgetProxy>},
    {"QAbstractButton", make<STQButton>},
    {"QPushButton", make<STQButton>},
    {"QToolButton", make<STQButton>},
    {"QRadioButton", make<STQButton>},
    {"QCheckBox", make<STQCheckBox>},
    {"QGroupBox", make<STQGroupBox>},
    {"QMenuBar", make<STQMenuBar>},
    {"QMenu", make<STQMenu>},
};
const std::size_t proxyTableSize = sizeof(proxyTable) / sizeof(proxyTable[0]);
