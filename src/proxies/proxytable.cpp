#include "proxy/proxytable.h"

#include "proxies/buttons/stqbutton.h"
#include "proxies/buttons/stqcheckbox.h"
#include "proxies/buttons/stqgroupbox.h"
#include "proxies/containers/stqdockwidget.h"
#include "proxies/containers/stqfiledialog.h"
#include "proxies/containers/stqstatusbar.h"
#include "proxies/containers/stqtabbar.h"
#include "proxies/containers/stqtoolbox.h"
#include "proxies/fields/stqcombobox.h"
#include "proxies/fields/stqdatetimeedit.h"
#include "proxies/fields/stqlineedit.h"
#include "proxies/fields/stqslider.h"
#include "proxies/fields/stqspinbox.h"
#include "proxies/fields/stqtextedit.h"
#include "proxies/menus/stqmenu.h"
#include "proxies/menus/stqmenubar.h"
#include "proxies/views/stqabstractitemview.h"
#include "proxies/views/stqlistview.h"
#include "proxies/views/stqtable.h"
#include "proxies/views/stqtreeview.h"

namespace {

template <class Proxy>
STWidgetProxy* make()
{
    return new Proxy; // the registry's
}

} // namespace

const proxy::ProxyTableRow proxy::proxyTable[] = {
    {"QWidget", make<STWidgetProxy>},
    {"QLabel", make<STWidgetProxy>},
    {"QAbstractButton", make<STQButton>},
    {"QPushButton", make<STQButton>},
    {"QToolButton", make<STQButton>},
    {"QRadioButton", make<STQButton>},
    {"QCheckBox", make<STQCheckBox>},
    {"QGroupBox", make<STQGroupBox>},
    {"QComboBox", make<STQComboBox>},
    {"QLineEdit", make<STQLineEdit>},
    {"QListView", make<STQListView>},
    {"QTreeView", make<STQTreeView>},
    {"QMenuBar", make<STQMenuBar>},
    {"QMenu", make<STQMenu>},
    {"QTextEdit", make<STQTextEdit>},
    {"QSlider", make<STQSlider>},
    {"QSpinBox", make<STQSpinBox>},
    {"QDoubleSpinBox", make<STQSpinBox>},
    {"QDateTimeEdit", make<STQDateTimeEdit>},
    {"QDateEdit", make<STQDateTimeEdit>},
    {"QTimeEdit", make<STQDateTimeEdit>},
    {"QTabBar", make<STQTabBar>},
    {"QToolBox", make<STQToolBox>},
    {"QTableView", make<STQTable>},
    {"QTableWidget", make<STQTable>},
    {"QDockWidget", make<STQDockWidget>},
    {"QFileDialog", make<STQFileDialog>},
    {"QAbstractItemView", make<STQAbstractItemView>},
    {"QStatusBar", make<STQStatusBar>},
};
const std::size_t proxy::proxyTableSize = sizeof(proxy::proxyTable) / sizeof(proxy::proxyTable[0]);
