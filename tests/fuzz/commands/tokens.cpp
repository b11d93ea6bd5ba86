#include "tokens.h"

namespace tokens {

namespace {

const QList<QByteArray> numbers = {"1", "2", "3", "4", "5", "5", "5", "5", "6", "6", "6", "7", "7", "8", "9", "9", "9",
    "10", "11", "12", "", "13", "+extensions", "+2", "+4", "+5", "+5", "+6", "+7", "+9", "+press", "+press", "+type",
    "+wheel", "+clipboard", "+focus", "+scroll", "+item", "+hidden", "+record", "+events"};

const QList<QByteArray> windows = {"Widget:main", "Widget:main", "Widget:main", "Widget:main", "Fuzz host",
    "Fuzz host - second", "Widget:second", "Widget:ActivePopupWidget", "Widget:ActiveModalWidget",
    "Widget:ActiveModalWidget:file", "Widget:executed", "message", "file", "", "Widget:", "Nobody"};

const QList<QByteArray> paths = {"probe", "check", "radio", "tool", "instant", "group", "disabled", "hidden", "edit",
    "masked", "number", "readonly", "memo", "combo", "editcombo", "spin", "double", "datetime", "time", "slider",
    "vslider", "progress", "label", "tabs", "tabs/qt_tabwidget_tabbar", "toolbox", "dock0", "dock1", "list", "listview",
    "shrinking", "modelless", "plainview", "tree", "treeview", "multitree", "table", "tableview", "menuarea", "dies",
    "closes", "kills", "mortaledit", "mortalcombo", "mortallist", "forgettingtree", "openinput", "openmessage",
    "openfile", "exec", "brew_action_button", "menubar", "statusbar", "Ok_dialog_button", "Cancel_dialog_button",
    "&Yes_dialog_button", "InGroup_dialog_button", "QLineEdit__widget__", "fileNameEdit", "file//fileNameEdit",
    "main//edit", "unnamed", "ActivePopupWidget", "FocusWidget", "main", "second", "executed", "file", "message",
    "qt_spinbox_lineedit", "spin/qt_spinbox_lineedit", "/", "//probe", "", "main/unnamed/probe", "qt_msgbox_label"};

const QList<QByteArray> locators = {"", "name=probe", "text=Probe", "QPushButton text=\"Probe\"", "text=Radio",
    "text*=Du", "text~=^(Al|Be)", "label=Name", "label*=a", "title=Group", "title=\"Dock 1\"", "title=\"Page A\"",
    "action=Brew", "action=brew", "tooltip=x", "accessible=x", "placeholder~=.", "ref=1", "ref=7", "ref=999999999999",
    "name=list visible=any", "name=hidden visible=any", "name=hidden", "name=disabled", "QPushButton nth=2", "* last",
    "QAbstractButton first", "QGroupBox >> QPushButton", "QMainWindow >> QTabWidget >> QTabBar", "name=tabs >> QTabBar",
    "name=tree >> QHeaderView", "QMenuBar", "QStatusBar", "QMenu", "QMenu first", ".enabled=false first",
    ".text~=\"^text\"", "QSpinBox .value=0", "QCheckBox .checkState=0", "QTabBar .currentIndex=0",
    "path=spin >> QLineEdit", "path=main//edit", "path=dies", "path=kills", "path=mortaledit", "path=mortallist",
    "QDialog", "QDialog >> QPushButton first", "QLineEdit", "text=", "text~=(", "nth=", ">>", "name=\"",
    "visible=maybe"};

const QList<QByteArray> classes = {"", "", "", "", "", "QWidget", "QAbstractButton", "QPushButton", "QLineEdit",
    "QTextEdit", "QComboBox", "QSpinBox", "QDateTimeEdit", "QSlider", "QTabBar", "QToolBox", "QListView", "QTreeView",
    "QTableView", "QTableWidget", "QAbstractItemView", "QMenu", "QMenuBar", "QFileDialog", "QStatusBar", "QGroupBox",
    "QObject", "%s%n"};

// Values of the acting commands and, for command 7, property names; the numbers also serve commands 10 and 11.
const QList<QByteArray> values = {"", "b:true", "b:false", "s:", "s:text", "s:Alpha", "s:Beta", "s:a/b", "s:x:y",
    "s:File/Alpha", "s:File/Sub/menu/Toggled", "s:Sub/menu/Toggled", "s:Item 0", "s:Item 1", "s:File/Item 2",
    "s:Changing/Clear", "s:Changing/Item 0", "s:Plain", "s:1", "s:1:1", "s:2:Twin", "s:First:2", "s:1;2/3", "s:V:1",
    "s:H:2", "s:0:new text", "s:Beta/Alpha", "s:Beta:Beta:", "s:Page A", "s:Page B", "s:One", "s:Two", "s:Dock 1",
    "s:12:30:00", "s:1 Jan 2000 00:00:00", "s:12.5", "s:\n", "s:abc\n", "s:/tmp", "s:/nowhere/else", "i:0", "i:1",
    "i:2", "i:-1", "i:8", "i:2147483647", "i:-2147483648", "s:MousePress:LeftButton:::", "s:MouseRelease:LeftButton:::",
    "s:MouseClick:LeftButton:::", "s:MouseClick:RightButton:::", "s:MouseDoubleClick:LeftButton:::",
    "s:MouseMove::0.9:0.9:", "s:MousePress:MidButton:0.1:0.1:ShiftModifier",
    "s:MouseMove:LeftButton:1.0:1.0:", "s:MouseClick:LeftButton", "s:MouseDoubleClick:RightButton", "s:::::", "Select",
    "s:Toggle", "s:ScrollTo", "s:+", "s:%s%d%%", "text", "checked", "value", "geometry", "font", "palette", "Ctrl+A",
    "Shift+Tab", "Alt+F", "Menu", "Ctrl+K, Ctrl+C", ":::0:1", "0.1:0.9:ControlModifier:-2:3", "press", "release",
    "currentText", "globalRect", "className", "silkClassName", "propertyNames", "pseudoPropertyNames", "itemList",
    "pathList", "rowCount", "columnCount", "itemText", "itemIsEnabled", "itemIsChecked", "itemPath", "itemTextList",
    "itemData", "itemPosition", "itemIsExpanded", "rowHeaderText", "columnHeaderText", "columnTextList", "currentPath",
    "currentItemRect", "pathDisabled", "pathChecked", "currentMessage", "toolTipList", "windowIcon", "cursor",
    "locale"};

// The last sections of the extensions.
const QList<QByteArray> options = {"", "force", "force", "b:true", "s:+", "s:Select", "x"};

const QList<QByteArray> wholeRequests = {"2,Widget:main", "4,Widget:main,edit", "5,Widget:main,check,,b:true",
    "5,Widget:main,radio", "5,Widget:main,tool", "5,Widget:main,instant", "5,Widget:main,group,,b:false",
    "5,Widget:main,brew_action_button", "5,Widget:main,combo,,s:a/b", "5,Widget:main,combo,,i:2",
    "5,Widget:main,editcombo,,i:4", "6,Widget:main,editcombo,,s:new", "6,Widget:main,edit,,s:hello\n",
    "6,Widget:main,masked,,s:123.456", "6,Widget:main,number,,s:42", "6,Widget:main,memo,,s:two\nlines",
    "5,Widget:main,spin,,i:77", "5,Widget:main,double,,s:2.5", "5,Widget:main,time,,s:12:30:00",
    "6,Widget:main,datetime,,s:1 Jan 2000 00:00:00", "5,Widget:main,slider,,i:7", "5,Widget:main,vslider,,i:0",
    "9,Widget:main,slider,,s:MouseClick:LeftButton", "5,Widget:main,tabs/qt_tabwidget_tabbar,,s:Two",
    "5,Widget:main,tabs/qt_tabwidget_tabbar,,i:4", "5,Widget:main,toolbox,,s:Page B", "5,Widget:main,dock0",
    "5,Widget:main,list,,s:a/b,s:+", "5,Widget:main,list,,i:0", "6,Widget:main,list,,b:true",
    "6,Widget:main,list,,s:changed", "5,Widget:main,shrinking,,i:7", "5,Widget:main,listview,,s:Beta",
    "9,Widget:main,list,,s:MouseClick:RightButton:::", "5,Widget:main,tree,,s:Alpha:two/child",
    "6,Widget:main,tree,,s:0:changed", "6,Widget:main,tree,,b:true", "5,Widget:main,treeview,,s:Beta/Alpha",
    "5,Widget:main,multitree,,s:Beta/Alpha", "5,Widget:main,forgettingtree,,s:Beta", "5,Widget:main,table,,s:1:2",
    "5,Widget:main,table,,s:3:4", "6,Widget:main,table,,s:changed", "5,Widget:main,tableview,,s:First:3",
    "5,Widget:main,plainview,,s:1;2,s:Select", "5,Widget:main,treeview,QAbstractItemView,s:1/2,s:Toggle",
    "7,Widget:main,treeview,,pathList", "7,Widget:main,treeview,,itemPath,s:Beta",
    "7,Widget:main,table,,itemText,s:1:2", "7,Widget:main,tableview,QAbstractItemView,itemPosition,s:H:1",
    "7,Widget:main,list,,currentItemRect", "7,Widget:main,menubar,,pathDisabled,s:File/Alpha",
    "5,Widget:main,menubar,,s:File/Alpha", "5,Widget:main,menubar,,s:File/Sub/menu/Toggled,b:true",
    "5,Widget:main,menubar,,s:Changing/Clear",
    "9,Widget:main,menuarea,,s:MouseClick:RightButton:::", "5,Widget:ActivePopupWidget,ActivePopupWidget,,s:Here",
    "5,Widget:ActivePopupWidget,ActivePopupWidget,,s:Beta",
    "9,Widget:main,edit,,s:MouseClick:RightButton:::", "5,Widget:main,openinput", "5,Widget:main,openmessage",
    "5,Widget:main,openfile", "5,Widget:main,exec", "5,Widget:executed,Close_dialog_button",
    "5,Widget:file,file,,s:/nowhere", "6,Widget:ActiveModalWidget,FocusWidget,,s:typed\n",
    "5,Widget:message,qt_msgbox_buttonbox/unnamed", "5,Widget:main,dies", "5,Widget:main,closes", "5,Widget:main,kills",
    "6,Widget:main,mortaledit,,s:x", "5,Widget:main,mortalcombo,,i:3", "5,Widget:main,mortallist,,i:5",
    "9,Widget:main,label,,s:MousePress:LeftButton:::", "9,Widget:main,list,QWidget,s:MouseMove::0.9:0.9:",
    "9,Widget:main,tree,QWidget,s:MouseRelease:LeftButton:::", "9,Widget:main,edit,,s:MouseDoubleClick:LeftButton:::",
    "10,Widget:main,10,10", "10,Widget:main,-3000,5000", "11,Widget:main,300,200", "12,,icon", "3", "1",
    "+2,Widget:main,", "+2,Widget:ActiveModalWidget,", "+2,Widget:main,name=tree", "+4,Widget:main,text=Probe",
    "+5,Widget:main,text=Probe", "+5,Widget:main,QTabBar first,,s:Two", "+5,Widget:main,QMenuBar,,s:File/Alpha",
    "+5,Widget:main,name=disabled", "+5,Widget:main,name=disabled,,,,force", "+5,Widget:main,action=Brew",
    "+6,Widget:main,name=edit,,s:hello", "+6,Widget:main,name=masked,,s:123,force", "+7,Widget:main,QGroupBox,,title",
    "+7,Widget:main,name=tree,,pathList", "+9,Widget:main,name=label,,s:MouseClick:RightButton:::",
    "+9,Widget:main,name=list,QWidget,s:MousePress:LeftButton:0.5:0.1:,force", "+press,Widget:main,path=edit,Shift+A,",
    "+press,Widget:main,,Shift,press", "+press,Widget:main,,Shift,release",
    "+type,Widget:main,path=memo,two\nlines\xe2\x82\xac", "+wheel,Widget:main,path=list,:::0:-2",
    "+scroll,Widget:main,path=list,,i:5", "+9,Widget:main,path=tree,,s:MouseClick:LeftButton:::,,s:a",
    "+item,Widget:main,path=list,,i:5", "+focus,Widget:main,path=edit", "+clipboard", "+clipboard,text", "+extensions",
    "+record,start", "+record,start,passwords", "+record,stop", "+events"};

} // namespace

const QList<QByteArray>& requests()
{
    return wholeRequests;
}

const QList<QByteArray>& ofSection(int section)
{
    static const QList<QByteArray>* const lists[] = {&numbers, &windows, &paths, &classes, &values, &values};
    return *lists[section];
}

const QList<QByteArray>& ofExtensionSection(const QByteArray& name, int section)
{
    // Those that act as a command have its sections, the others their values where that has the class.
    const bool actsAsCommand = name.size() == 2;
    static const QList<QByteArray>* const lists[] = {&numbers, &windows, &locators, &classes, &values, &options};
    return section == 3 && !actsAsCommand ? values : *lists[section];
}

} // namespace tokens
