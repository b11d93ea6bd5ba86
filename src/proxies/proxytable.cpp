#include "proxy/proxytable.h"

#include "proxies/stqabstractitemview.h"
#include "proxies/stqbutton.h"
#include "proxies/stqcheckbox.h"
#include "proxies/stqcombobox.h"
#include "proxies/stqdatetimeedit.h"
#include "proxies/stqdockwidget.h"
#include "proxies/stqfiledialog.h"
#include "proxies/stqgroupbox.h"
#include "proxies/stqlineedit.h"
#include "proxies/stqlistview.h"
#include "proxies/stqmenu.h"
#include "proxies/stqmenubar.h"
#include "proxies/stqslider.h"
#include "proxies/stqspinbox.h"
#include "proxies/stqstatusbar.h"
#include "proxies/stqtabbar.h"
#include "proxies/stqtable.h"
#include "proxies/stqtextedit.h"
#include "proxies/stqtoolbox.h"
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
const std::size_t proxyTableSize = sizeof(proxyTable) / sizeof(proxyTable[0]);
