#!/usr/bin/env python3
"""Writes the seeds of the target "commands" to corpus/commands: tests/fuzz/write_seeds.py

They are kept here in readable form, the values not yet in hexadecimal digits. A line that ends in "\\r" arrives together
with the next one. The application is that of commands/richhost.cpp.
"""

from pathlib import Path

CLICK = "s:MouseClick:LeftButton:::"
CONTEXT_MENU = "s:MouseClick:RightButton:::"

SEEDS = {
    "queries": ["1", "2,Widget:main", "3", "4,Widget:main,edit", "8,Fuzz host - second", "12,,icon"],
    "unknown": ["", "0", "13,a,b", "1,", "01", ",,,,,,,,"],
    "together": ["5,Widget:main,probe\r", "7,Widget:main,probe,,text\r", "8,Widget:main"],
    "buttons": ["5,Widget:main,check,,b:true", "5,Widget:main,radio", "5,Widget:main,group,,b:false"],
    "derived_names": ["5,Widget:main,brew_action_button", "7,Widget:main,InGroup_dialog_button,,text"],
    "tool_button_menu": ["5,Widget:main,instant", "5,Widget:ActivePopupWidget,ActivePopupWidget,,s:Beta"],
    "line_edits": [
        "6,Widget:main,edit,,s:hello\n",
        "6,Widget:main,masked,,s:123.456",
        "6,Widget:main,number,,s:42",
        "6,Widget:main,number,,s:100",
        "6,Widget:main,readonly,,s:x",
    ],
    "text_edit": ["6,Widget:main,memo,,s:two\nlines"],
    "combos": [
        "5,Widget:main,combo,,s:a/b",
        "5,Widget:main,combo,,i:0",
        "5,Widget:main,editcombo,,i:4",
        "6,Widget:main,editcombo,,s:new",
    ],
    "spins": ["5,Widget:main,spin,,i:77", "6,Widget:main,double,,s:2.5", "5,Widget:main,spin,,i:-2147483648"],
    "dates": ["5,Widget:main,time,,s:12:30:00", "6,Widget:main,datetime,,s:1 Jan 2000 00:00:00"],
    "sliders": [
        "5,Widget:main,slider,,i:7",
        "5,Widget:main,vslider,,i:2147483647",
        "9,Widget:main,slider,,s:MouseClick:LeftButton",
    ],
    "tabs": [
        "5,Widget:main,tabs/qt_tabwidget_tabbar,,s:T/h:ree",
        "5,Widget:main,tabs/qt_tabwidget_tabbar,,i:-1",
    ],
    "tool_box": ["5,Widget:main,toolbox,,s:Page B", "7,Widget:main,toolbox,,currentText"],
    "docks": ["5,Widget:main,dock0", "7,Widget:main,dock0,,windowTitle"],
    "lists": [
        "5,Widget:main,list,,s:a/b,s:+",
        "5,Widget:main,list,,i:0",
        "6,Widget:main,list,,b:true",
        "6,Widget:main,list,,s:changed",
    ],
    "shrinking_list": ["5,Widget:main,shrinking,,i:7", "5,Widget:main,shrinking,,i:0"],
    "trees": [
        "5,Widget:main,tree,,s:Alpha:two/child",
        "6,Widget:main,tree,,s:0:changed",
        "6,Widget:main,tree,,b:false",
        "5,Widget:main,multitree,,s:Beta/Alpha",
    ],
    "tree_properties": [
        "7,Widget:main,treeview,,pathList",
        "7,Widget:main,treeview,,itemTextList,s:Beta/Alpha",
        "7,Widget:main,treeview,,itemIsOpen,s:Beta",
    ],
    "forgetting_tree": ["5,Widget:main,forgettingtree,,s:Beta", "7,Widget:main,forgettingtree,,pathList"],
    "tables": [
        "5,Widget:main,table,,s:1:2",
        "6,Widget:main,table,,s:changed",
        "7,Widget:main,table,,itemText,s:1:2",
    ],
    "editing_table": ["5,Widget:main,tableview,,s:First:3", "5,Widget:main,tableview,,s:4:1"],
    "plain_view": [
        "5,Widget:main,plainview,,s:1;2,s:Select",
        "7,Widget:main,plainview,,itemData,s:3/2;2",
        "7,Widget:main,plainview,,itemPosition,s:H:1",
    ],
    "view_as_base_class": [
        "5,Widget:main,treeview,QAbstractItemView,s:1/2,s:Toggle",
        "7,Widget:main,tableview,QAbstractItemView,itemPosition,s:V:1",
    ],
    "menu_bar": [
        "5,Widget:main,menubar,,s:File/Sub/menu/Toggled,b:true",
        "7,Widget:main,menubar,,pathChecked,s:File/Sub/menu/Toggled",
        "5,Widget:main,menubar,,s:File/nothing",
        "5,Widget:main,menubar,,s:Changing/Clear",
    ],
    "context_menus": [
        "9,Widget:main,menuarea,,%s" % CONTEXT_MENU,
        "5,Widget:ActivePopupWidget,ActivePopupWidget,,s:Here",
        "9,Widget:main,edit,,%s" % CONTEXT_MENU,
        "5,Widget:ActivePopupWidget,ActivePopupWidget,,s:Item 0",
    ],
    "drag": [
        "9,Widget:main,list,QWidget,s:MousePress:LeftButton:0.1:0.1:",
        "9,Widget:main,tree,QWidget,s:MouseMove::0.9:0.9:ShiftModifier",
        "9,Widget:main,tree,QWidget,s:MouseRelease:LeftButton:1.0:1.0:",
    ],
    "executed_dialog": ["5,Widget:main,exec", "5,Widget:executed,Close_dialog_button", "8,Widget:main"],
    "input_dialog": [
        "5,Widget:main,openinput",
        "6,Widget:ActiveModalWidget,QLineEdit__widget__,,s:typed\n",
        "2,Widget:ActiveModalWidget",
    ],
    "message_box": [
        "5,Widget:main,openmessage",
        "5,Widget:main,probe",
        "5,message,qt_msgbox_buttonbox/Yes_dialog_button",
    ],
    "file_dialog": ["5,Widget:main,openfile", "5,Widget:file,file,,s:/nowhere"],
    "dying": [
        "5,Widget:main,dies",
        "5,Widget:main,dies",
        "5,Widget:main,kills",
        "2,Widget:main",
        "5,Widget:main,closes",
    ],
    "dying_of_input": [
        "6,Widget:main,mortaledit,,s:xyz",
        "5,Widget:main,mortalcombo,,i:3",
        "5,Widget:main,mortallist,,i:5",
    ],
    "windows": [
        "10,Widget:main,10,-10",
        "11,Widget:main,300,200",
        "10,Widget:main,a,b",
        "4,Widget:main,probe",
    ],
    "popup_in_front": [
        "9,Widget:main,edit,,%s" % CONTEXT_MENU,
        "8,Widget:second",
        "9,Widget:main,probe,,%s" % CLICK,
    ],
    "snapshots": ["+2,Widget:main,", "+2,Widget:main,name=tree", "+2,Nobody,", "+extensions"],
    "located": [
        "+4,Widget:main,QPushButton text=Probe",
        "+5,Widget:main,text=Probe,,,,",
        "+5,Widget:main,name=disabled,,,,",
        "+5,Widget:main,name=disabled,,,,force",
        "+6,Widget:main,name=edit,,s:\u20ac,",
        "+7,Widget:main,QGroupBox title=Group,,checked,",
        "+9,Widget:main,name=label,,%s," % CLICK,
    ],
    "located_items": [
        "+5,Widget:main,QTabBar first,,s:Two",
        "+5,Widget:main,name=list,,s:a/b,s:+",
        "+5,Widget:main,name=tree,,s:Alpha:two/nothing",
        "+5,Widget:main,QMenuBar,,s:File/Sub/menu/Disabled",
        "+5,Widget:main,QMenuBar,,s:Changing/Clear",
        "+5,Widget:main,name=combo,,s:nothing",
    ],
    "keys": [
        "+focus,Widget:main,name=memo",
        "+type,Widget:main,name=memo,two\t\u20ac",
        "+press,Widget:main,,Ctrl+A,",
        "+press,Widget:main,,Shift,press",
        "+press,Widget:main,name=list,Down,",
        "+press,Widget:main,,Shift,release",
    ],
    "wheel_and_clipboard": [
        "+wheel,Widget:main,name=spin,:::0:2",
        "+clipboard,text",
        "+press,Widget:main,name=edit,Ctrl+V,",
        "+clipboard",
    ],
    "formats": ["5,Widget:main,probe,%s%n%%,,", "7,Widget:main,probe,,%d%s"],
}


def encoded(line: str) -> str:
    """The request as it goes over the wire."""
    sections = line.split(",")
    if sections[0].startswith("+"):
        sections[1:] = [section.encode("utf-8").hex() for section in sections[1:]]
    elif sections[0] in ("5", "6", "9"):
        sections[4:] = [value.encode("latin-1").hex() for value in sections[4:]]
    return ",".join(sections)


def main() -> None:
    folder = Path(__file__).resolve().parent / "corpus" / "commands"
    for name, lines in SEEDS.items():
        (folder / name).write_bytes("\n".join(encoded(line) for line in lines).encode("latin-1"))


if __name__ == "__main__":
    main()
