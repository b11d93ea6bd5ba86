#include "corewindows.h"
#include "testhost.h"

#include <QtCore/QFile>
#include <QtCore/QFileSystemWatcher>
#include <QtCore/QStringList>

namespace {

// A widget that saves into a folder when it is pressed. The application is told of changes in that folder.
class Saver : public QWidget
{
public:
    explicit Saver(const QString& folder)
        : file(folder + latin1("/saved"))
    {
        setMinimumSize(100, 50);
    }

protected:
    void mousePressEvent(QMouseEvent*) override { QFile(file).open(QIODevice::WriteOnly); }

private:
    QString file;
};

} // namespace

void buildSaver(TestHost& host)
{
    host.onRequest(latin1("showSaver"), [&host] {
        const QString folder = QFile::decodeName(qgetenv("WATCHED_FOLDER"));
        auto* window = addWindow("saver", "Saver", QPoint(500, 30));
        add(window, named(new Saver(folder), "save"));
        auto* watcher = new QFileSystemWatcher(QStringList(folder), window);
        host.onSignal(watcher, SIGNAL(directoryChanged(QString)), [&host] { host.journal(latin1("folder changed")); });
        window->show();
    });
}
