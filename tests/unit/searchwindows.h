#pragma once

#include "bridge/csquishproxy.h"
#include "hierarchicalnames.h"
#include "latin1.h"

#include <QPushButton>
#include <QWidget>

#include <functional>
#include <memory>

template <class Widget>
Widget* add(QWidget* parent, const char* name)
{
    auto* widget = new Widget(parent);
    widget->setObjectName(QLatin1String(name));
    return widget;
}

// Runs a function in its destructor. When its parent is being deleted, the children before it are null pointers then.
class DestructorCall : public QWidget
{
public:
    DestructorCall(QWidget* parent, std::function<void()> function)
        : QWidget(parent)
        , call(std::move(function))
    {
    }
    ~DestructorCall() override { call(); }

private:
    std::function<void()> call;
};

// Windows to search, and a script object that searches them.
class SearchWindows
{
protected:
    void showWindows()
    {
        proxy.reset(new LmSquishProxy::CSquishProxy("proxy"));
        main.reset(add<QWidget>(nullptr, "main"));
        main->setWindowTitle(latin1("Editor"));
        left = add<QWidget>(main.get(), "left");
        right = add<QWidget>(main.get(), "right");
        add<QPushButton>(left, "ok");
        add<QPushButton>(right, "ok");
        add<QPushButton>(right, "cancel");
        main->show();
        other.reset(add<QWidget>(nullptr, "other"));
        other->setWindowTitle(latin1("Editor 2"));
        other->show();
    }

    void deleteWindows()
    {
        main.reset();
        other.reset();
        proxy.reset();
    }

    QWidget* find(const char* name, const QString& title = QString(), QWidget* window = nullptr,
        bool onlyVisible = true, bool pattern = false)
    {
        return proxy->findWidgetByHierarchicalName(hierarchicalName(name), title, window, onlyVisible, pattern);
    }
    QString error() { return proxy->getLastError(); }

    std::unique_ptr<LmSquishProxy::CSquishProxy> proxy;
    // main "Editor": left { ok }, right { ok, cancel }; other "Editor 2"; both shown
    std::unique_ptr<QWidget> main;
    std::unique_ptr<QWidget> other;
    QWidget* left = nullptr;
    QWidget* right = nullptr;
};
