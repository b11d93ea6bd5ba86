// The search by window name and widget path that scripts call, and its own error.

#include "activewindow.h"
#include "bridge/cpytestproxy.h"
#include "latin1.h"
#include "unittests.h"

#include <QTest>

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

#include <memory>

using LmSquishProxy::CPyTestProxy;

class tst_PyTestProxy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void widgetIsFoundByItsPath_data();
    void widgetIsFoundByItsPath();
    void failuresHaveTheirNames_data();
    void failuresHaveTheirNames();
    void popupBlocksOtherWindows();
    void popupDoesNotBlockTheActiveWindow();
    void popupIsFoundByItsSpecialNames();
    void modalDialogBlocksOtherWindows();
    void focusWidgetIsFoundWhateverTheWindow();
    void noFocusWidgetIsNotFound();
    void noPopupIsNotFound();
    void eachObjectHasItsOwnError();

private:
    QWidget* get(const char* window, const char* path, bool checkModality = true)
    {
        return proxy->getWidget(latin1(window), latin1(path), checkModality);
    }
    QString error() { return proxy->getLastPyTestError(); }

    std::unique_ptr<CPyTestProxy> proxy;
    // main "Editor": left { ok }, right { ok, edit, gone (hidden), "Apply now" without name }; other "Report"
    std::unique_ptr<QWidget> main;
    std::unique_ptr<QWidget> other;
    QLineEdit* edit = nullptr;
};

void tst_PyTestProxy::init()
{
    proxy.reset(new CPyTestProxy("LmSquishProxy"));
    other.reset(new QWidget);
    other->setObjectName(latin1("other"));
    other->setWindowTitle(latin1("Report"));
    main.reset(new QWidget);
    main->setObjectName(latin1("main"));
    main->setWindowTitle(latin1("Editor"));
    auto* left = new QWidget(main.get());
    left->setObjectName(latin1("left"));
    auto* right = new QWidget(main.get());
    right->setObjectName(latin1("right"));
    (new QPushButton(left))->setObjectName(latin1("ok"));
    (new QPushButton(right))->setObjectName(latin1("ok"));
    edit = new QLineEdit(right);
    edit->setObjectName(latin1("edit"));
    auto* gone = new QPushButton(right);
    gone->setObjectName(latin1("gone"));
    gone->hide();
    new QPushButton(latin1("&Apply now"), right);
    main->resize(200, 100);
    other->resize(200, 100);
    QVERIFY(showActive(*other));
    QVERIFY(showActive(*main));
}

void tst_PyTestProxy::cleanup()
{
    main.reset();
    other.reset();
    proxy.reset();
}

void tst_PyTestProxy::widgetIsFoundByItsPath_data()
{
    QTest::addColumn<QString>("window");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("parent");
    const auto row = [](const char* title, const char* window, const char* path, const char* parent) {
        QTest::newRow(title) << latin1(window) << latin1(path) << latin1(parent);
    };
    row("title", "Editor", "left/ok", "left");
    row("beginning of the title", "Edi", "right/ok", "right");
    row("object name of the window", "Widget:main", "edit", "right");
    row("gap", "Editor", "main//edit", "right");
    row("derived name", "Editor", "ApplyNow_dialog_button", "right");
    row("window itself", "Editor", "main", "");
}

void tst_PyTestProxy::widgetIsFoundByItsPath()
{
    QFETCH(QString, window);
    QFETCH(QString, path);
    QFETCH(QString, parent);
    const QWidget* found = proxy->getWidget(window, path);
    QCOMPARE(error(), latin1("NoError"));
    QVERIFY(found);
    QCOMPARE(found->parentWidget() ? found->parentWidget()->objectName() : latin1(""), parent);
}

void tst_PyTestProxy::failuresHaveTheirNames_data()
{
    QTest::addColumn<QString>("window");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("error");
    const auto row = [](const char* window, const char* path, const char* error) {
        QTest::newRow(error) << latin1(window) << latin1(path) << latin1(error);
    };
    row("Nowhere", "ok", "WindowNotFoundError");
    row("", "ok", "WindowAmbiguousError");
    row("Editor", "nobody", "WidgetNotFoundError");
    row("Editor", "gone", "WidgetNotVisibleError");
    row("Editor", "ok", "WidgetAmbiguousError");
    row("Editor", "main/ok", "WidgetNotFoundError");
    row("Widget:ActivePopupWidget", "ok", "WindowNotFoundError");
}

void tst_PyTestProxy::failuresHaveTheirNames()
{
    QFETCH(QString, window);
    QFETCH(QString, path);
    QFETCH(QString, error);
    QVERIFY(!proxy->getWidget(window, path));
    QCOMPARE(this->error(), error);
    QVERIFY(get("Editor", "edit"));
    QCOMPARE(this->error(), latin1("NoError"));
}

void tst_PyTestProxy::popupBlocksOtherWindows()
{
    QMenu menu;
    menu.addAction(latin1("Entry"));
    menu.popup(main->mapToGlobal(QPoint(5, 5)));
    QCOMPARE(QApplication::activePopupWidget(), static_cast<QWidget*>(&menu));
    QVERIFY(!get("Report", "other"));
    QCOMPARE(error(), latin1("WindowNotActivePopupError"));
    QCOMPARE(get("Report", "other", false), other.get());
    menu.close();
    QCOMPARE(get("Report", "other"), other.get());
}

void tst_PyTestProxy::popupDoesNotBlockTheActiveWindow()
{
    QMenu menu;
    menu.addAction(latin1("Entry"));
    menu.popup(main->mapToGlobal(QPoint(5, 5)));
    QCOMPARE(QApplication::activeWindow(), main.get());
    QCOMPARE(get("Editor", "edit"), static_cast<QWidget*>(edit));
}

void tst_PyTestProxy::popupIsFoundByItsSpecialNames()
{
    QMenu menu;
    menu.setObjectName(latin1("menu"));
    menu.addAction(latin1("Entry"));
    menu.popup(main->mapToGlobal(QPoint(5, 5)));
    QCOMPARE(get("Widget:ActivePopupWidget", "menu"), static_cast<QWidget*>(&menu));
    QCOMPARE(get("Editor", "any/ActivePopupWidget"), static_cast<QWidget*>(&menu));
}

void tst_PyTestProxy::modalDialogBlocksOtherWindows()
{
    QDialog dialog;
    dialog.setObjectName(latin1("dialog"));
    dialog.setWindowTitle(latin1("Question"));
    dialog.setModal(true);
    dialog.show();
    QCOMPARE(QApplication::activeModalWidget(), static_cast<QWidget*>(&dialog));
    QVERIFY(!get("Editor", "edit"));
    QCOMPARE(error(), latin1("WindowNotActiveModalError"));
    QCOMPARE(get("Editor", "edit", false), static_cast<QWidget*>(edit));
    QCOMPARE(get("Question", "dialog"), static_cast<QWidget*>(&dialog));
    QCOMPARE(get("Widget:ActiveModalWidget:Ques", "dialog"), static_cast<QWidget*>(&dialog));
}

void tst_PyTestProxy::focusWidgetIsFoundWhateverTheWindow()
{
    edit->setFocus();
    QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(edit));
    QCOMPARE(get("Report", "FocusWidget"), static_cast<QWidget*>(edit));
    QCOMPARE(get("Report", "no/such/path/FocusWidget"), static_cast<QWidget*>(edit));
    QVERIFY(!get("Report", "FocusWidget/edit"));
    QVERIFY(!get("Nowhere", "FocusWidget"));
    QCOMPARE(error(), latin1("WindowNotFoundError"));
}

void tst_PyTestProxy::noFocusWidgetIsNotFound()
{
    edit->setFocus();
    edit->clearFocus();
    QVERIFY(!QApplication::focusWidget());
    QVERIFY(!get("Editor", "FocusWidget"));
    QCOMPARE(error(), latin1("WidgetNotFoundError"));
}

void tst_PyTestProxy::noPopupIsNotFound()
{
    QVERIFY(!get("Editor", "ActivePopupWidget"));
    QCOMPARE(error(), latin1("WidgetNotFoundError"));
}

void tst_PyTestProxy::eachObjectHasItsOwnError()
{
    CPyTestProxy second("second");
    QVERIFY(!get("Editor", "ok"));
    QCOMPARE(error(), latin1("WidgetAmbiguousError"));
    QCOMPARE(second.getLastPyTestError(), latin1("NoError"));
    QVERIFY(!second.getWidget(latin1("Nowhere"), latin1("ok")));
    QCOMPARE(error(), latin1("WidgetAmbiguousError"));
    QVERIFY(get("Editor", "edit"));
    QCOMPARE(second.getLastPyTestError(), latin1("WindowNotFoundError"));
}

UNIT_TESTS(tst_pytestproxy, unit::withApplication<tst_PyTestProxy>)
#include "tst_pytestproxy.moc"
