#pragma once

#include <QWidget>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QPoint>
#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtCore/QString>

// All that a test could have changed in an application: what is open, held, grabbed and in the clipboard, where focus
// and cursor are, the properties of all widgets and actions, the items of views with their selection.
class HostState : public QObject
{
public:
    HostState();

    // Closes popups and windows that were not there when this object was made; keyboard and cursor go back.
    void restore() const;

    // Values by what they are values of, as "window/edit text".
    using Values = QMap<QString, QString>;
    Values values() const;

    // A line for each value that is another one by now: "NAME was VALUE, is VALUE".
    QStringList changesSince(const Values& before) const;

protected:
    // Keeps account of the buttons and keys that are held.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void addApplication(Values& values) const;

    // The windows are only compared: some may have died.
    const QSet<QWidget*> windows;
    const QPointer<QWidget> activeWindow;
    const QPointer<QWidget> focus;
    const QPoint cursor;
    QSet<int> heldButtons;
    QSet<int> heldKeys;
};
