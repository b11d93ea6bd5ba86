// Every kind of entry field, each journalling what reaches it; see tests/protocol/test_entry_*.py.

#include "testhost.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QCompleter>
#include <QDateTimeEdit>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QSlider>
#include <QSpinBox>
#include <QStandardItemModel>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTextCursor>
#include <QTextEdit>
#include <QTimer>
#include <QVBoxLayout>
#include <QValidator>

namespace {

// Lets nothing pass but what begins with "x".
class PickyValidator : public QValidator
{
public:
    using QValidator::QValidator;

    State validate(QString& text, int&) const override
    {
        return text.startsWith(QLatin1Char('x')) ? Acceptable : Invalid;
    }
};

// Takes typed line feeds as what they stand for, which Qt's own text edit does not.
class ParagraphEdit : public QTextEdit
{
protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->text() == QLatin1String("\n"))
            textCursor().insertBlock();
        else
            QTextEdit::keyPressEvent(event);
    }
};

// Tells a combo box's list of a mouse over its last item as soon as it is shown.
class MouseOverLastItem : public QObject
{
public:
    explicit MouseOverLastItem(QAbstractItemView* watched)
        : QObject(watched)
        , list(watched)
    {
        list->installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Show) {
            const int height = list->sizeHintForRow(0);
            const QPoint position(5, list->model()->rowCount() * height - height / 2);
            QMouseEvent move(QEvent::MouseMove, position, list->viewport()->mapToGlobal(position), Qt::NoButton,
                Qt::NoButton, Qt::NoModifier);
            QApplication::sendEvent(list->viewport(), &move);
        }
        return false;
    }

private:
    QAbstractItemView* const list;
};

// A list that never opens.
class ClosedComboBox : public QComboBox
{
public:
    void showPopup() override { }
};

// A list that opens some time after the click.
class SlowComboBox : public QComboBox
{
public:
    void showPopup() override
    {
        if (!delay.isActive())
            delay.start(300, this);
    }

protected:
    void timerEvent(QTimerEvent*) override
    {
        delay.stop();
        QComboBox::showPopup();
    }

private:
    QBasicTimer delay;
};

class EntryWindow : public QWidget
{
public:
    explicit EntryWindow(TestHost& testHost)
        : host(testHost)
    {
        setObjectName(QLatin1String("entries"));
        setWindowTitle(QLatin1String("Entries"));
        addLineEdits();
        addTextEdits();
        addSpinBoxes();
        addDateTimeEdits();
        addSliders();
        addComboBoxes();
        move(40, 40);
        show();
    }

private:
    // Columns of one kind each.
    template <class Widget>
    Widget* add(const char* name, int column, Widget* widget)
    {
        widget->setObjectName(QLatin1String(name));
        grid->addWidget(widget, rows[column]++, column);
        host.journalInput(widget);
        return widget;
    }

    // Journals the mouse at that part of a field which gets it, as that of NAMEText.
    void journalText(QWidget* field, QWidget* part)
    {
        part->setObjectName(field->objectName() + QLatin1String("Text"));
        host.journalInput(part);
    }

    QLineEdit* addLine(const char* name, const char* text)
    {
        auto* edit = add(name, 0, new QLineEdit(QLatin1String(text)));
        host.journalValue(edit, SIGNAL(textEdited(QString)), QLatin1String("edited"));
        host.journalSignal(edit, SIGNAL(returnPressed()), QLatin1String("returned"));
        return edit;
    }

    void addLineEdits()
    {
        addLine("line", "old text");
        addLine("empty", "");
        addLine("masked", "")->setInputMask(QLatin1String("000-000"));
        auto* number = addLine("number", "7");
        number->setValidator(new QIntValidator(0, 100, number));
        auto* picky = addLine("picky", "xyz");
        picky->setValidator(new PickyValidator(picky));
        addLine("short", "")->setMaxLength(3);
        addLine("readOnlyLine", "fixed")->setReadOnly(true);
        addLine("disabledLine", "off")->setEnabled(false);
        addLine("hiddenLine", "unseen")->hide();
        auto* longLine = addLine("longLine", "");
        longLine->setMaxLength(200000);
        longLine->setValidator(new PickyValidator(longLine));
        auto* towns = addLine("towns", "");
        const QStringList names = QStringList() << QLatin1String("Aachen") << QLatin1String("Aalen");
        towns->setCompleter(new QCompleter(names, towns));
        dieLater(addLine("doomedLine", ""), SIGNAL(textEdited(QString)));
        addLine("bystander", "untouched");
    }

    void addTextEdits()
    {
        const char* const names[] = {"notes", "emptyNotes", "readOnlyNotes", "doomedNotes"};
        for (const char* name : names) {
            auto* edit = add(name, 1, new QTextEdit);
            edit->setFixedHeight(60);
            journalText(edit, edit->viewport());
            if (name != names[1] && name != names[3])
                edit->setPlainText(QLatin1String("old\ntext"));
            edit->setReadOnly(name == names[2]);
        }
        dieLater(findChild<QTextEdit*>(QLatin1String("doomedNotes")), SIGNAL(textChanged()));
        auto* paragraphs = new ParagraphEdit;
        paragraphs->setObjectName(QLatin1String("paragraphs"));
        grid->addWidget(paragraphs, rows[1]++, 1);
    }

    template <class Box>
    Box* addSpin(const char* name, Box* box)
    {
        add(name, 2, box);
        host.journalSignal(box, SIGNAL(editingFinished()), QLatin1String("finished"));
        journalText(box, box->template findChild<QLineEdit*>());
        host.onRequest(QLatin1String(name) + QLatin1String("Centre"), [=] {
            QStyleOptionSpinBox option;
            option.initFrom(box);
            journalCentre(box->style()->subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxEditField, box));
        });
        return box;
    }

    void addSpinBoxes()
    {
        addSpin("amount", new QSpinBox)->setValue(1);
        auto* untracked = addSpin("untracked", new QSpinBox);
        untracked->setKeyboardTracking(false);
        host.journalValue(untracked, SIGNAL(valueChanged(int)), QLatin1String("changed"));
        auto* money = addSpin("money", new QSpinBox);
        money->setPrefix(QLatin1String("$ "));
        money->setSuffix(QLatin1String(" net"));
        addSpin("price", new QDoubleSpinBox)->setValue(9.5);
        addSpin("readOnlySpin", new QSpinBox)->setReadOnly(true);
        addSpin("disabledSpin", new QSpinBox)->setEnabled(false);
        dieLater(addSpin("doomedSpin", new QSpinBox), SIGNAL(valueChanged(int)));
    }

    template <class Edit>
    Edit* addMoment(const char* name, Edit* edit, const char* format)
    {
        addSpin(name, edit);
        edit->setDisplayFormat(QLatin1String(format));
        edit->setDateTime(QDateTime(QDate(2001, 2, 3), QTime(4, 5, 6)));
        return edit;
    }

    void addDateTimeEdits()
    {
        addMoment("date", new QDateEdit, "yyyy-MM-dd");
        addMoment("time", new QTimeEdit, "HH:mm:ss");
        addMoment("moment", new QDateTimeEdit, "dd.MM.yyyy HH:mm");
        addMoment("calendar", new QDateEdit, "yyyy-MM-dd")->setCalendarPopup(true);
        addMoment("readOnlyDate", new QDateEdit, "yyyy-MM-dd")->setReadOnly(true);
        dieLater(addMoment("doomedDate", new QDateEdit, "yyyy-MM-dd"), SIGNAL(dateChanged(QDate)));
    }

    void journalCentre(const QRect& rect)
    {
        host.journal(QString::fromLatin1("centre %1,%2")
                         .arg((rect.left() + rect.right()) / 2)
                         .arg((rect.top() + rect.bottom()) / 2));
    }

    QSlider* addSlider(const char* name, Qt::Orientation orientation, int maximum, int length)
    {
        auto* slider = add(name, 3, new QSlider(orientation));
        slider->setMaximum(maximum);
        if (orientation == Qt::Horizontal)
            slider->setFixedWidth(length);
        else
            slider->setFixedHeight(length);
        host.journalSignal(slider, SIGNAL(sliderPressed()), QLatin1String("pressed"));
        host.journalValue(slider, SIGNAL(sliderMoved(int)), QLatin1String("moved"));
        host.journalSignal(slider, SIGNAL(sliderReleased()), QLatin1String("released"));
        host.journalValue(slider, SIGNAL(valueChanged(int)), QLatin1String("changed"));
        return slider;
    }

    void addSliders()
    {
        addSlider("wide", Qt::Horizontal, 100, 300)->setValue(20);
        addSlider("narrow", Qt::Horizontal, 1000, 100);
        auto* shifted = addSlider("shifted", Qt::Horizontal, 50, 300);
        shifted->setMinimum(-50);
        shifted->setTracking(false);
        auto* inverted = addSlider("inverted", Qt::Horizontal, 10, 300);
        inverted->setInvertedAppearance(true);
        auto* upright = addSlider("upright", Qt::Vertical, 10, 80);
        host.onRequest(QLatin1String("placeOfFirstPixel"), [=] {
            QStyleOptionSlider option;
            option.initFrom(upright);
            journalCentre(
                upright->style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, upright));
        });
        addSlider("uprightInverted", Qt::Vertical, 10, 80)->setInvertedAppearance(true);
        addSlider("disabledSlider", Qt::Horizontal, 10, 100)->setEnabled(false);
        dieLater(addSlider("doomedSlider", Qt::Horizontal, 10, 200), SIGNAL(sliderPressed()));
    }

    QComboBox* addChoice(const char* name, QComboBox* box)
    {
        add(name, 4, box);
        box->addItems(QStringList() << QLatin1String("red") << QLatin1String("green") << QLatin1String("blue")
                                    << QLatin1String("green") << QLatin1String("Red"));
        box->setCurrentIndex(2);
        box->view()->setObjectName(QLatin1String(name) + QLatin1String("List"));
        host.journalInput(box->view());
        host.journalValue(box, SIGNAL(activated(int)), QLatin1String("chosen"));
        return box;
    }

    void addComboBoxes()
    {
        auto* choice = addChoice("choice", new QComboBox);
        host.onRequest(QLatin1String("tellOfMouseEarly"), [=] { new MouseOverLastItem(choice->view()); });
        host.onRequest(QLatin1String("tellOfMouseLate"), [=] {
            host.onSignal(choice, SIGNAL(highlighted(int)), [=] {
                QWidget* list = choice->view()->viewport();
                const QPoint position = QCursor::pos();
                QApplication::postEvent(list,
                    new QMouseEvent(QEvent::MouseMove, list->mapFromGlobal(position), position, Qt::NoButton,
                        Qt::NoButton, Qt::NoModifier));
            });
        });
        addChoice("unset", new QComboBox)->setCurrentIndex(-1);
        auto* editable = addChoice("editable", new QComboBox);
        editable->setEditable(true);
        journalText(editable, editable->lineEdit());
        auto* editableUnset = addChoice("editableUnset", new QComboBox);
        editableUnset->setEditable(true);
        editableUnset->setCurrentIndex(-1);
        auto* many = addChoice("many", new QComboBox);
        for (int i = many->count(); i < 300; ++i)
            many->addItem(QString::fromLatin1("item %1").arg(i));
        auto* slow = addChoice("slow", new SlowComboBox);
        host.onRequest(QLatin1String("putSlowIntoPopup"), [=] {
            auto* popup = new QWidget(this, Qt::Popup);
            (new QVBoxLayout(popup))->addWidget(slow);
            popup->move(mapToGlobal(QPoint(20, 20)));
            popup->show();
        });
        addChoice("closed", new ClosedComboBox);
        addChangingComboBoxes();
        addComboBoxesWithGaps();
        host.onRequest(QLatin1String("endDoubleClickInterval"), [] { QApplication::setDoubleClickInterval(0); });
        host.onRequest(QLatin1String("animateComboBoxes"), [] { QApplication::setEffectEnabled(Qt::UI_AnimateCombo); });
    }

    // The second item is disabled and the fourth not in the list, so that arrow keys skip both.
    QComboBox* addGaps(const char* name, bool isEditable)
    {
        QComboBox* box = addChoice(name, new QComboBox);
        box->setEditable(isEditable);
        box->setCurrentIndex(0);
        qobject_cast<QStandardItemModel*>(box->model())->item(1)->setEnabled(false);
        return box;
    }

    void addComboBoxesWithGaps()
    {
        qobject_cast<QListView*>(addGaps("gaps", false)->view())->setRowHidden(3, true);
        addGaps("editableGaps", true);
        auto* lone = add("lone", 4, new QComboBox);
        lone->addItem(QLatin1String("only"));
        lone->setEditable(true);
    }

    void addChangingComboBoxes()
    {
        addChoice("disabledChoice", new QComboBox)->setEnabled(false);
        add("nothing", 4, new QComboBox);
        auto* refilled = addChoice("refilled", new QComboBox);
        host.onSignal(refilled, SIGNAL(highlighted(int)), [=] {
            refilled->clear();
            refilled->addItem(QLatin1String("only"));
        });
        auto* doomed = addChoice("doomedChoice", new QComboBox);
        QTimer* death = deathOf(doomed);
        host.onSignal(doomed, SIGNAL(highlighted(int)), [=] {
            if (doomed->view()->currentIndex().row() == 3)
                death->start();
        });
    }

    // Deletes the widget soon after the signal, but not within it: Qt itself could not bear that.
    void dieLater(QWidget* widget, const char* signal) { connect(widget, signal, deathOf(widget), SLOT(start())); }

    QTimer* deathOf(QWidget* widget)
    {
        auto* timer = new QTimer(this);
        timer->setSingleShot(true);
        host.onSignal(timer, SIGNAL(timeout()), [=] {
            host.journal(QLatin1String("died ") + widget->objectName());
            delete widget;
        });
        return timer;
    }

    TestHost& host;
    QGridLayout* const grid = new QGridLayout(this);
    int rows[5] = {};
};

void build(TestHost& host)
{
    new EntryWindow(host); // lives as long as the process
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
