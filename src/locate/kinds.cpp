#include "locate/kinds.h"

#include <QAbstractButton>
#include <QAction>
#include <QCommandLinkButton>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QTabBar>
#include <QTextDocument>

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace locate {

namespace {

bool readButton(const QWidget* widget, TextVisitor& visitor)
{
    return visitor.visit(static_cast<const QAbstractButton*>(widget)->text(), Markup::Mnemonics);
}

bool readCommandLink(const QWidget* widget, TextVisitor& visitor)
{
    return readButton(widget, visitor)
        || visitor.visit(static_cast<const QCommandLinkButton*>(widget)->description(), Markup::None);
}

// An "&" marks a mnemonic only where there is a widget to go to.
bool readLabel(const QWidget* widget, TextVisitor& visitor)
{
    const auto* label = static_cast<const QLabel*>(widget);
    const QString text = label->text();
    const bool isRich = label->textFormat() == Qt::RichText
        || (label->textFormat() == Qt::AutoText && text.contains(QLatin1Char('<')) && Qt::mightBeRichText(text));
    return visitor.visit(text, isRich ? Markup::Rich : label->buddy() ? Markup::Mnemonics : Markup::None);
}

bool readTabs(const QWidget* widget, TextVisitor& visitor)
{
    const auto* bar = static_cast<const QTabBar*>(widget);
    for (int i = 0; i < bar->count(); ++i) {
        if (visitor.visit(bar->tabText(i), Markup::Mnemonics))
            return true;
    }
    return false;
}

bool readEntries(const QWidget* widget, TextVisitor& visitor)
{
    const QList<QAction*> entries = widget->actions();
    for (const QAction* entry : entries) {
        if (entry->isVisible() && !entry->isSeparator() && visitor.visit(entry->text(), Markup::Mnemonics))
            return true;
    }
    return false;
}

bool readStatus(const QWidget* widget, TextVisitor& visitor)
{
    return visitor.visit(static_cast<const QStatusBar*>(widget)->currentMessage(), Markup::None);
}

// Sorted by the names of the classes, for the search.
constexpr WidgetKind kinds[] = {
    {"QAbstractButton", "button", readButton, true},
    {"QAbstractItemView", "view", nullptr, false},
    {"QAbstractScrollArea", "scroll area", nullptr, false},
    {"QAbstractSlider", "slider", nullptr, false},
    {"QAbstractSpinBox", "spin box", nullptr, false},
    {"QCalendarWidget", "calendar", nullptr, false},
    {"QCheckBox", "checkbox", readButton, true},
    {"QComboBox", "combo box", readPlaceholder, false},
    {"QCommandLinkButton", "button", readCommandLink, true},
    {"QDateTimeEdit", "date edit", nullptr, false},
    {"QDialogButtonBox", "button box", nullptr, false},
    {"QDockWidget", "dock", nullptr, false},
    {"QGraphicsView", "graphics view", nullptr, false},
    {"QGroupBox", "group", readTitle, false},
    {"QHeaderView", "header", nullptr, false},
    {"QLCDNumber", "display", nullptr, false},
    {"QLabel", "label", readLabel, true},
    {"QLineEdit", "edit", readPlaceholder, false},
    {"QListView", "list", nullptr, false},
    {"QMdiArea", "workspace", nullptr, false},
    {"QMdiSubWindow", "subwindow", nullptr, false},
    {"QMenu", "menu", readEntries, false},
    {"QMenuBar", "menu bar", readEntries, false},
    {"QPlainTextEdit", "edit", readPlaceholder, false},
    {"QProgressBar", "progress bar", nullptr, false},
    {"QRadioButton", "radio button", readButton, true},
    {"QScrollBar", "scroll bar", nullptr, false},
    {"QSizeGrip", "size grip", nullptr, false},
    {"QSplitter", "splitter", nullptr, false},
    {"QSplitterHandle", "splitter handle", nullptr, false},
    {"QStackedWidget", "stack", nullptr, false},
    {"QStatusBar", "status bar", readStatus, true},
    {"QTabBar", "tab bar", readTabs, false},
    {"QTabWidget", "tabs", nullptr, false},
    {"QTableView", "table", nullptr, false},
    {"QTextEdit", "edit", readPlaceholder, false},
    {"QToolBar", "tool bar", nullptr, false},
    {"QToolBox", "tool box", nullptr, false},
    {"QToolButton", "button", readButton, true},
    {"QTreeView", "tree", nullptr, false},
    {"QWidget", "widget", nullptr, false},
};

const WidgetKind& kindOfWidgets()
{
    return *(std::end(kinds) - 1);
}

// Recursion, since Microsoft's compiler of 2015 knows no loops in such functions.
constexpr bool isBefore(const char* name, const char* other)
{
    return *name != '\0' && *name == *other ? isBefore(name + 1, other + 1) : *name < *other;
}

constexpr bool areSorted(std::size_t count)
{
    return count < 2 || (isBefore(kinds[count - 2].className, kinds[count - 1].className) && areSorted(count - 1));
}
static_assert(areSorted(sizeof kinds / sizeof *kinds), "a kind of widgets is in the wrong place");

// Null when there is no row for exactly that class.
const WidgetKind* kindOfClass(const char* className)
{
    const auto* kind = std::lower_bound(std::begin(kinds), std::end(kinds), className,
        [](const WidgetKind& row, const char* name) { return isBefore(row.className, name); });
    return kind != std::end(kinds) && !isBefore(className, kind->className) ? kind : nullptr;
}

const WidgetKind* nearestKind(const QMetaObject* metaObject)
{
    const WidgetKind* kind = nullptr;
    for (; !kind && metaObject; metaObject = metaObject->superClass())
        kind = kindOfClass(metaObject->className());
    return kind ? kind : &kindOfWidgets();
}

} // namespace

const WidgetKind& WidgetKinds::of(const QWidget* widget) const
{
    return *known.of(widget->metaObject(), nearestKind);
}

const char* roleOf(const QWidget* widget, const WidgetKind& kind)
{
    if (!widget->isWindow() || &kind != &kindOfWidgets())
        return kind.role;
    return widget->inherits("QDialog") ? "dialog" : "window";
}

} // namespace locate
