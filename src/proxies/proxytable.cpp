#include "proxy/proxytable.h"

#include "proxies/stqabstractitemview.h"
#include "proxies/stqbutton.h"
#include "proxies/stqcheckbox.h"
#include "proxies/stqgroupbox.h"
#include "proxies/stqlistview.h"
#include "proxies/stqtable.h"
#include "proxies/stqtreeview.h"

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
    {"QListView", make<STQListView>},
    {"QTreeView", make<STQTreeView>},
    {"QTableView", make<STQTable>},
    {"QTableWidget", make<STQTable>},
    {"QAbstractItemView", make<STQAbstractItemView>},
};
const std::size_t proxyTableSize = sizeof(proxyTable) / sizeof(proxyTable[0]);
