#pragma once

#include <QtCore/QObject>

#include <functional>

class QAbstractItemView;
class TestHost;

// Journals what happens at a view named NAME:
//   keypress NAME ..., press NAME ... and so on   input at the view, at NAMEViewport, its viewport, and at NAMEEditor,
//                                                 a line edit in which an item is edited
//   current NAME ROW,COLUMN 'TEXT'                its current item changed
//   selection NAME TEXT|TEXT                      its selection changed, to these items in the order of rows
//   data NAME ROW,COLUMN 'TEXT' check STATE       data changed; the current item's
// and "do NAMEState" journals "state NAME current ROW,COLUMN 'TEXT' selected TEXT|TEXT". For a change of
// model, after it.
void journalView(TestHost& host, QAbstractItemView* view);

// Runs the function once, from the event loop, after each emission of the signal.
void afterSignal(TestHost& host, QObject* sender, const char* signal, const std::function<void()>& function);

// Gives the focus away as soon as the watched widget gets it.
class FocusThief : public QObject
{
public:
    FocusThief(QWidget* watched, QWidget* thief);
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* thief;
};

// Runs a function at each event of one type at an object.
class EventHandler : public QObject
{
public:
    EventHandler(QObject* watched, int eventType, const std::function<void()>& handler);
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int type;
    std::function<void()> function;
};
