#pragma once

#include <QMainWindow>

class DialogsPage;
class Journal;
class QDockWidget;
class QTabWidget;

/// The roastery: pages of widgets in the middle, docks around them.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(Journal& journal);
    ~MainWindow() override;

    /// Shows the page with the title \a title; false where there is none.
    bool showPage(const QString& title);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void addPages();
    void addDocks();
    void connectActions();
    QDockWidget* makeDock(const char* name, const QString& title, Qt::DockWidgetArea area, QWidget* content);
    QWidget* makeRecipe();

    Journal& m_journal;
    QTabWidget* m_pages; // our children, as the following
    DialogsPage* m_dialogs;
};
