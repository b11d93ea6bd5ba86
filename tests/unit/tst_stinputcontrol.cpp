#include "errorof.h"
#include "latin1.h"
#include "proxy/stinputcontrol.h"

#include "proxy/eventkiller.h"
#include "proxy/sterror.h"
#include "unittests.h"
#include "waiting.h"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QStringList>
#include <QTest>

namespace {

// Opens the operations to the test.
class Control : public STInputControl
{
public:
    using STInputControl::keyClick;
    using STInputControl::keyPress;
    using STInputControl::keyRelease;
    using STInputControl::mouseClick;
    using STInputControl::mouseDoubleClick;
    using STInputControl::mouseDrag;
    using STInputControl::mouseMove;
    using STInputControl::mousePress;
    using STInputControl::mouseRelease;
    using STInputControl::PostingScope;
    using STInputControl::postInputEvent;
    using STInputControl::startProcessingEvents;
    using STInputControl::stopProcessingEvents;
    using STInputControl::syncEvents;
    using STInputControl::typeText;
};

// Records the input events of the widget that it watches.
class Recorder : public QObject
{
public:
    bool eventFilter(QObject*, QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease: {
            const auto* key = static_cast<QKeyEvent*>(event);
            events << QString::fromLatin1("%1 %2 '%3' %4")
                          .arg(QLatin1String(event->type() == QEvent::KeyPress ? "press" : "release"))
                          .arg(key->key())
                          .arg(key->text())
                          .arg(int(key->modifiers()));
            return true;
        }
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
            events << QString::fromLatin1("mouse %1 at %2,%3")
                          .arg(int(event->type()))
                          .arg(static_cast<QMouseEvent*>(event)->pos().x())
                          .arg(static_cast<QMouseEvent*>(event)->pos().y());
            return true;
        default:
            return false;
        }
    }

    QStringList events;
};

// Where no window of this application is.
const QPoint emptyDesktop(790, 590);
const char hidden[] = "Error: widget is hidden by another window";

} // namespace

class tst_STInputControl : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void charactersHaveTheKeyOfTheirUpperCaseForm();
    void charactersBeyondPrintableAsciiHaveNoKey();
    void keyCodesHaveModifiersAndNoText();
    void anEmptyTextPostsNothing();
    void keysGoToThePopupsFocusWidgetFirst();
    void keysWithoutFocusGoNowhere();
    void movingToWhereTheCursorIsNeverFails();
    void movingToTheEmptyDesktopFails();
    void aPressOnTheEmptyDesktopLeavesTheButtonHeld();
    void aClickOnTheEmptyDesktopLeavesNoButtonHeld();
    void aDragThatLeavesItsWidgetReleasesIt();
    void aClickBesideAPopupGoesToThePopup();
    void withoutProcessingEventsAreOnlyPosted();
    void aPostingScopeEndsEvenWhenSomethingThrows();
    void aPostingScopeStartsNoProcessingThatWasStopped();
    void aTargetThatDiesBeforeTheEventIsAnError();
    void aDoubleClickEndsSilentlyWhenTheReleaseWasTheTargetsEnd();
    void theKillerStopsItsEventTypeOnly();
    void aDragShowsTheTargetNoMoveWithoutButtons();

private:
    Qt::MouseButtons buttonsOfAMove();

    QWidget* window = nullptr;
    Recorder recorder;
    Control control;
};

void tst_STInputControl::init()
{
    window = new QWidget;
    window->setGeometry(100, 100, 200, 100);
    window->setFocusPolicy(Qt::StrongFocus);
    window->show();
    window->activateWindow();
    window->setFocus();
    QVERIFY(becomesTrue([&] { return QApplication::focusWidget() == window; }));
    QVERIFY(becomesTrue([&] { return QApplication::widgetAt(window->mapToGlobal(QPoint(50, 50))) == window; }));
    recorder.events.clear();
    window->installEventFilter(&recorder);
    control.startProcessingEvents();
}

void tst_STInputControl::cleanup()
{
    delete window;
    QCoreApplication::processEvents();
}

// The buttons that the window sees held when the mouse moves into it.
Qt::MouseButtons tst_STInputControl::buttonsOfAMove()
{
    struct MoveRecorder : QObject
    {
        bool eventFilter(QObject*, QEvent* event) override
        {
            if (event->type() == QEvent::MouseMove)
                buttons = static_cast<QMouseEvent*>(event)->buttons();
            return false;
        }
        Qt::MouseButtons buttons = Qt::NoButton;
    } moves;
    window->setMouseTracking(false); // so that only a drag is seen
    window->installEventFilter(&moves);
    control.mouseMove(window->mapToGlobal(QPoint(20, 20)), Qt::NoModifier);
    return moves.buttons;
}

void tst_STInputControl::charactersHaveTheKeyOfTheirUpperCaseForm()
{
    control.typeText(latin1("Ab1"));
    QCOMPARE(recorder.events,
        QStringList() << latin1("press 65 'A' 0") << latin1("release 65 'A' 0") << latin1("press 66 'b' 0")
                      << latin1("release 66 'b' 0") << latin1("press 49 '1' 0") << latin1("release 49 '1' 0"));
}

void tst_STInputControl::charactersBeyondPrintableAsciiHaveNoKey()
{
    control.keyClick(QChar(0xe9));
    control.keyClick(QLatin1Char('\n'));
    QCOMPARE(recorder.events,
        QStringList() << latin1("press 0 '\xe9' 0") << latin1("release 0 '\xe9' 0") << latin1("press 0 '\n' 0")
                      << latin1("release 0 '\n' 0"));
}

void tst_STInputControl::keyCodesHaveModifiersAndNoText()
{
    control.keyPress(Qt::Key_End, Qt::ShiftModifier);
    control.keyRelease(Qt::Key_End, Qt::ShiftModifier);
    const QString rest = QString::fromLatin1(" %1 '' %2").arg(int(Qt::Key_End)).arg(int(Qt::ShiftModifier));
    QCOMPARE(recorder.events, QStringList() << latin1("press") + rest << latin1("release") + rest);
}

void tst_STInputControl::anEmptyTextPostsNothing()
{
    control.typeText(QString());
    QVERIFY(recorder.events.isEmpty());
}

void tst_STInputControl::keysGoToThePopupsFocusWidgetFirst()
{
    QWidget popup(nullptr, Qt::Popup);
    QLineEdit edit(&popup);
    popup.setGeometry(150, 150, 100, 50);
    popup.show();
    edit.setFocus();
    QVERIFY(becomesTrue([&] { return QApplication::widgetAt(popup.mapToGlobal(QPoint(90, 45))) == &popup; }));
    QCOMPARE(QApplication::activePopupWidget(), &popup);
    control.typeText(latin1("x"));
    QCOMPARE(edit.text(), latin1("x"));
    QVERIFY(recorder.events.isEmpty());
}

void tst_STInputControl::keysWithoutFocusGoNowhere()
{
    window->clearFocus();
    QVERIFY(!QApplication::focusWidget());
    control.typeText(latin1("x"));
    QVERIFY(recorder.events.isEmpty());
}

void tst_STInputControl::movingToWhereTheCursorIsNeverFails()
{
    QCursor::setPos(emptyDesktop);
    QVERIFY(becomesTrue([] { return QCursor::pos() == emptyDesktop; }));
    QCOMPARE(errorOf([this] { control.mouseMove(emptyDesktop, Qt::NoModifier); }), QString());
}

void tst_STInputControl::movingToTheEmptyDesktopFails()
{
    const QPoint beside = emptyDesktop - QPoint(1, 1);
    QCOMPARE(errorOf([&] { control.mouseMove(beside, Qt::NoModifier); }), latin1(hidden));
    QCOMPARE(QCursor::pos(), beside); // the cursor has moved all the same
}

void tst_STInputControl::aPressOnTheEmptyDesktopLeavesTheButtonHeld()
{
    QCursor::setPos(emptyDesktop);
    QCOMPARE(errorOf([this] { control.mousePress(Qt::LeftButton, Qt::NoModifier); }), latin1(hidden));
    QCOMPARE(int(buttonsOfAMove()), int(Qt::LeftButton));
    control.mouseRelease(Qt::LeftButton, Qt::NoModifier);
    QCursor::setPos(emptyDesktop);
    QCOMPARE(errorOf([this] { control.mouseRelease(Qt::LeftButton, Qt::NoModifier); }), latin1(hidden));
}

void tst_STInputControl::aClickOnTheEmptyDesktopLeavesNoButtonHeld()
{
    QCursor::setPos(emptyDesktop); // so that it is the press that fails, not the move
    QVERIFY(becomesTrue([] { return QCursor::pos() == emptyDesktop; }));
    QCOMPARE(errorOf([this] { control.mouseClick(emptyDesktop, Qt::LeftButton, Qt::NoModifier); }), latin1(hidden));
    QCOMPARE(int(buttonsOfAMove()), int(Qt::NoButton));
}

void tst_STInputControl::aDragThatLeavesItsWidgetReleasesIt()
{
    const QPoint inside = window->mapToGlobal(QPoint(10, 12));
    QCOMPARE(errorOf([&] { control.mouseDrag(inside, emptyDesktop, Qt::LeftButton); }), latin1(hidden));
    QVERIFY(becomesTrue([this] { return recorder.events.size() == 2; }));
    QVERIFY(recorder.events.last().startsWith(QString::fromLatin1("mouse %1 ").arg(int(QEvent::MouseButtonRelease))));
    QCOMPARE(int(buttonsOfAMove()), int(Qt::NoButton));
}

void tst_STInputControl::aClickBesideAPopupGoesToThePopup()
{
    QMenu menu;
    menu.addAction(latin1("Entry"));
    menu.popup(window->mapToGlobal(QPoint(300, 0)));
    Recorder menuRecorder;
    menu.installEventFilter(&menuRecorder);
    control.mouseClick(window->mapToGlobal(QPoint(10, 10)), Qt::LeftButton, Qt::NoModifier);
    QCOMPARE(menuRecorder.events.size(), 2);
    QVERIFY(recorder.events.isEmpty());
}

void tst_STInputControl::withoutProcessingEventsAreOnlyPosted()
{
    control.stopProcessingEvents();
    control.mouseClick(window->mapToGlobal(QPoint(10, 12)), Qt::LeftButton, Qt::NoModifier);
    QVERIFY(recorder.events.isEmpty());
    QCoreApplication::processEvents();
    QCOMPARE(recorder.events,
        QStringList() << QString::fromLatin1("mouse %1 at 10,12").arg(int(QEvent::MouseButtonPress))
                      << QString::fromLatin1("mouse %1 at 10,12").arg(int(QEvent::MouseButtonRelease)));
}

void tst_STInputControl::aPostingScopeEndsEvenWhenSomethingThrows()
{
    QCOMPARE(errorOf([&] {
        const Control::PostingScope postingOnly(control);
        control.keyClick(Qt::Key_Up, Qt::NoModifier);
        proxy::raiseError("within the scope");
    }),
        latin1("within the scope"));
    QVERIFY(recorder.events.isEmpty());
    control.keyClick(Qt::Key_Down, Qt::NoModifier);
    QCOMPARE(recorder.events.size(), 4);
}

void tst_STInputControl::aPostingScopeStartsNoProcessingThatWasStopped()
{
    control.stopProcessingEvents();
    {
        const Control::PostingScope postingOnly(control);
    }
    control.keyClick(Qt::Key_Down, Qt::NoModifier);
    QVERIFY(recorder.events.isEmpty());
    QCoreApplication::processEvents();
    QCOMPARE(recorder.events.size(), 2);
}

void tst_STInputControl::aTargetThatDiesBeforeTheEventIsAnError()
{
    auto* target = new QWidget;
    QPointer<QWidget> guarded(target);
    struct Deleter : QObject
    {
        explicit Deleter(QWidget* widget)
            : victim(widget)
        {
            startTimer(0);
        }
        void timerEvent(QTimerEvent*) override { delete victim; }
        QPointer<QWidget> victim;
    } deleter(target);
    QCOMPARE(
        errorOf([&] { control.postInputEvent(target, new QEvent(QEvent::User)); }), latin1(proxy::deadWidgetMessage));
    QVERIFY(!guarded);
}

void tst_STInputControl::aDoubleClickEndsSilentlyWhenTheReleaseWasTheTargetsEnd()
{
    struct Deleter : QObject
    {
        bool eventFilter(QObject* watched, QEvent* event) override
        {
            if (event->type() != QEvent::MouseButtonRelease)
                return false;
            delete watched;
            return true;
        }
    } deleter;
    const QPointer<QWidget> target(window);
    window = nullptr; // there is no other below
    target->installEventFilter(&deleter);
    const QPoint position = target->mapToGlobal(QPoint(10, 12));
    QCOMPARE(errorOf([&] { control.mouseDoubleClick(position, Qt::LeftButton, Qt::NoModifier); }), QString());
    QVERIFY(!target);
}

void tst_STInputControl::theKillerStopsItsEventTypeOnly()
{
    EventKiller killer(QEvent::MouseMove);
    QEvent move(QEvent::MouseMove);
    QEvent press(QEvent::MouseButtonPress);
    QVERIFY(killer.eventFilter(window, &move));
    QVERIFY(!killer.eventFilter(window, &press));
}

void tst_STInputControl::aDragShowsTheTargetNoMoveWithoutButtons()
{
    struct MoveRecorder : QObject
    {
        bool eventFilter(QObject*, QEvent* event) override
        {
            if (event->type() == QEvent::MouseMove)
                buttons << int(static_cast<QMouseEvent*>(event)->buttons());
            return false;
        }
        QList<int> buttons;
    } moves;
    window->setMouseTracking(true);
    control.mouseMove(window->mapToGlobal(QPoint(20, 20)), Qt::NoModifier);
    control.mousePress(Qt::LeftButton, Qt::NoModifier);
    window->installEventFilter(&moves);
    control.mouseMove(window->mapToGlobal(QPoint(60, 60)), Qt::NoModifier);
    // On X11 the windowing system's own move may come later.
    QVERIFY(!moves.buttons.isEmpty());
    QCOMPARE(moves.buttons.first(), int(Qt::LeftButton));
    control.mouseRelease(Qt::LeftButton, Qt::NoModifier);
}

UNIT_TESTS(tst_stinputcontrol, unit::withApplication<tst_STInputControl>)
#include "tst_stinputcontrol.moc"
