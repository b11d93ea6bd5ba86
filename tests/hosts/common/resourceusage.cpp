#include "resourceusage.h"

#include <QApplication>
#include <QLineEdit>
#include <QPixmapCache>
#include <QTextDocument>
#include <QTextEdit>
#include <QtCore/QDir>

#include <malloc.h>

// There in a process with the address sanitizer, whose heap the C library knows nothing of.
extern "C" __attribute__((weak)) size_t __sanitizer_get_current_allocated_bytes();

namespace {

qlonglong heapBytes()
{
    if (__sanitizer_get_current_allocated_bytes)
        return qlonglong(__sanitizer_get_current_allocated_bytes());
    malloc_trim(0);
    const struct mallinfo2 heap = mallinfo2();
    return qlonglong(heap.uordblks + heap.hblkhd);
}

int countObjects(const QObject* object)
{
    int count = 1;
    for (const QObject* child : object->children())
        count += countObjects(child);
    return count;
}

// A field's memory for undoing what was typed is its own.
void forgetWhatWasTyped()
{
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* widget : widgets) {
        if (auto* line = qobject_cast<QLineEdit*>(widget))
            line->setText(line->text());
        if (auto* text = qobject_cast<QTextEdit*>(widget))
            text->document()->clearUndoRedoStacks();
    }
}

} // namespace

void takeStock(QObject* object)
{
    forgetWhatWasTyped();
    QPixmapCache::clear(); // styles keep what they have painted there, such as the arrows of menus, up to its limit
    int objects = countObjects(qApp);
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        if (!window->parent())
            objects += countObjects(window);
    }
    object->setProperty("objects", objects);
    object->setProperty("widgets", int(QApplication::allWidgets().size()));
    object->setProperty(
        "files", int(QDir(QString::fromLatin1("/proc/self/fd")).entryList(QDir::Files | QDir::System).size()));
    object->setProperty("heap", QString::number(heapBytes()));
    object->setProperty("heap", QString::number(heapBytes())); // the first one made room for the value
}
