#include "scenes.h"

#include <QComboBox>
#include <QCompleter>
#include <QDateTimeEdit>
#include <QDial>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QPointer>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QTextEdit>
#include <QValidator>

namespace {

const QStringList& fruits()
{
    static const QStringList list = QStringList() << words("apple") << words("pear") << words("plum") << words("fig");
    return list;
}

void putLineEdits(QWidget* centre)
{
    put(centre, new QLineEdit, "line");
    put(centre, new QLineEdit(words("12")), "validated")->setValidator(new QIntValidator(0, 99, centre));
    put(centre, new QLineEdit, "masked")->setInputMask(words("99-99;_"));
    put(centre, new QLineEdit, "completed")->setCompleter(new QCompleter(fruits(), centre));
    put(centre, new QLineEdit(words("fixed")), "readOnly")->setReadOnly(true);
    put(centre, new QTextEdit(words("some text")), "text")->setMaximumHeight(40);
    put(centre, new QPlainTextEdit(words("some text")), "plainText")->setMaximumHeight(40);
}

void putComboBoxes(QWidget* centre)
{
    put(centre, new QComboBox, "combo")->addItems(fruits());
    auto* editable = put(centre, new QComboBox, "editableCombo");
    editable->setEditable(true);
    editable->addItems(fruits());
    auto* viewed = put(centre, new QComboBox, "viewedCombo");
    viewed->setView(new QListView);
    viewed->addItems(fruits());
}

void putNumbers(QWidget* centre)
{
    put(centre, new QSlider(Qt::Horizontal), "slider")->setRange(0, 20);
    put(centre, new QSlider(Qt::Vertical), "verticalSlider");
    put(centre, new QDial, "dial");
    put(centre, new QScrollBar(Qt::Horizontal), "scrollBar");
    put(centre, new QSpinBox, "spin");
    put(centre, new QDoubleSpinBox, "doubleSpin");
    put(centre, new QDateTimeEdit, "dateTime");
    put(centre, new QDateEdit, "date")->setCalendarPopup(true);
    put(centre, new QTimeEdit, "time");
}

} // namespace

void buildEntries(Stage& stage, QWidget* centre)
{
    putLineEdits(centre);
    putComboBoxes(centre);
    putNumbers(centre);

    const QPointer<QWidget> guarded(centre);
    stage.addTrick([=, &stage](QObject*) {
        const QList<QComboBox*> boxes = guarded ? guarded->findChildren<QComboBox*>() : QList<QComboBox*>();
        for (QComboBox* box : boxes) {
            if (stage.chance.oneIn(2))
                box->clear();
            else
                box->setEditable(!box->isEditable());
        }
    });
    stage.addTrick([=, &stage](QObject*) {
        const QList<QComboBox*> boxes = guarded ? guarded->findChildren<QComboBox*>() : QList<QComboBox*>();
        for (QComboBox* box : boxes) {
            box->addItems(fruits());
            box->removeItem(stage.chance.below(4));
        }
    });
    stage.addTrick([=, &stage](QObject*) {
        const QList<QLineEdit*> edits = guarded ? guarded->findChildren<QLineEdit*>() : QList<QLineEdit*>();
        for (QLineEdit* edit : edits) {
            edit->setReadOnly(stage.chance.oneIn(3));
            edit->clear();
        }
    });
    stage.addTrick([=, &stage](QObject*) {
        const QList<QAbstractSlider*> sliders
            = guarded ? guarded->findChildren<QAbstractSlider*>() : QList<QAbstractSlider*>();
        for (QAbstractSlider* slider : sliders)
            slider->setRange(-stage.chance.below(2000000000), stage.chance.below(2000000000));
    });
}
