#include "proxy/postedcall.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QObject>

namespace proxy {

namespace {

// Makes one call when the event that is posted for it is delivered, and then deletes itself.
class PostedCall : public QObject
{
public:
    explicit PostedCall(const std::function<void()>& posted)
        : function(posted)
    {
        QCoreApplication::postEvent(this, new QEvent(eventType()));
    }

protected:
    bool event(QEvent* event) override
    {
        if (event->type() != eventType())
            return QObject::event(event);
        const std::function<void()> call = function; // whose event loop may delete this object
        deleteLater();
        call();
        return true;
    }

private:
    static QEvent::Type eventType()
    {
        static const int registered = QEvent::registerEventType();
        return static_cast<QEvent::Type>(registered);
    }

    const std::function<void()> function;
};

} // namespace

void postCall(const std::function<void()>& function)
{
    new PostedCall(function); // deletes itself
}

} // namespace proxy
