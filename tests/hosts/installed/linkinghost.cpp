// An application that links the agent, names what has no name, and ends with the agent's connection.

#include <agent/testclient.h>
#include <bridge/nameprovider.h>

#include <QApplication>
#include <QWidget>

#include <memory>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QWidget window;
    window.setWindowTitle(QLatin1String("Linked"));
    window.show();
    LmSquishProxy::setNameProvider(nullptr);
    const std::unique_ptr<TestClient> agent(createTestClient());
    QObject::connect(agent.get(), SIGNAL(disconnected()), &application, SLOT(quit()));
    return QApplication::exec();
}
