#include "describe.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QStringList>
#include <QTableView>
#include <QTextEdit>

#include <algorithm>

QString nameOf(const QObject* object)
{
    if (!object->objectName().isEmpty())
        return object->objectName();
    QString text = QLatin1String(object->metaObject()->className());
    if (const auto* button = qobject_cast<const QAbstractButton*>(object))
        text = button->text();
    else if (const auto* action = qobject_cast<const QAction*>(object))
        text = action->text();
    else if (const auto* box = qobject_cast<const QGroupBox*>(object))
        text = box->title();
    return text.remove(QLatin1Char('&'));
}

QString stateWord(int checkState)
{
    return QLatin1String(checkState == Qt::Unchecked ? "off" : checkState == Qt::PartiallyChecked ? "partly" : "on");
}

QString describe(const QObject* view, const QModelIndex& index)
{
    const QString text = index.data().toString();
    if (qobject_cast<const QTableView*>(view))
        return QString::fromLatin1("%1,%2 %3").arg(index.row()).arg(index.column()).arg(text).trimmed();
    QStringList path(text);
    for (QModelIndex above = index.parent(); above.isValid(); above = above.parent())
        path.prepend(above.data().toString());
    return path.join(QLatin1String("/"));
}

QString textOf(const QObject* field)
{
    if (const auto* comboBox = qobject_cast<const QComboBox*>(field))
        return comboBox->currentText();
    if (const auto* textEdit = qobject_cast<const QTextEdit*>(field))
        return textEdit->toPlainText().replace(QLatin1Char('\n'), QLatin1String(" / "));
    const auto* lineEdit = qobject_cast<const QLineEdit*>(field);
    if (!lineEdit)
        return QString();
    if (lineEdit->echoMode() == QLineEdit::Normal)
        return lineEdit->text();
    return QString::fromLatin1("length %1").arg(lineEdit->text().size());
}

QString describeSelection(const QAbstractItemView* view)
{
    const bool wholeRows = view->selectionBehavior() == QAbstractItemView::SelectRows;
    const QItemSelectionModel* selection = view->selectionModel();
    QModelIndexList selected = wholeRows ? selection->selectedRows() : selection->selectedIndexes();
    std::sort(selected.begin(), selected.end());
    QStringList texts;
    for (const QModelIndex& index : selected)
        texts.append(index.data().toString());
    return texts.isEmpty() ? QString(QLatin1String("nothing")) : texts.join(QLatin1String(", "));
}
