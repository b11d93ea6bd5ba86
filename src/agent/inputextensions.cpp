#include "agent/inputextensions.h"

#include "agent/commands.h"
#include "agent/keyboardfocus.h"
#include "agent/locatedwidget.h"
#include "agent/readiness.h"
#include "agent/request.h"
#include "agent/requestloop.h"
#include "agent/wirevalue.h"
#include "compat/systeminput.h"
#include "proxy/keysequence.h"
#include "proxy/mousecommand.h"
#include "proxy/stapplicationproxy.h"
#include "proxy/sterror.h"
#include "proxy/textparts.h"

#include <QApplication>
#include <QClipboard>
#include <QPointer>
#include <QVariant>
#include <QWidget>

#include <cstddef>
#include <memory>
#include <vector>

namespace agent {

namespace {

// The application handles each character before the next one, and nothing else meanwhile: a longer text would block it.
const int maximumCharacters = 100000;

QByteArray classReply(const QWidget* widget)
{
    return QByteArray("0,") + widget->metaObject()->className();
}

// Finds the widget, in a window that a user could reach, and has `act` run on it, which returns the reply.
template <class Act>
QByteArray withWidget(const Request& request, Act act)
{
    const Access access = locatedWidget(reachableWindow(windowName(request), QApplication::activeWindow()), request);
    if (!access.widget)
        return access.refusal;
    return access.widget->isEnabled() ? act(access.widget) : notYet(QLatin1String("disabled"));
}

// The class of the widget, and the strokes that nobody is to see.
QByteArray replyAfter(const proxy::KeySequence& keys, const QByteArray& classReply)
{
    if (keys.hasLostWidget())
        proxy::raiseError(proxy::deadWidgetMessage);
    QByteArray reply = classReply;
    const char* separator = ",hidden:";
    for (const proxy::KeySequence::Range& range : keys.hiddenStrokes()) {
        reply += separator + QByteArray::number(range.first) + '-' + QByteArray::number(range.second);
        separator = ";";
    }
    return reply;
}

QByteArray send(QWidget* widget, const proxy::KeySequence::NextStroke& nextStroke)
{
    const QByteArray className = classReply(compat::keyReceiver(widget->window()));
    const RequestLoop::Reply replyEarly = RequestLoop::replyToCurrent();
    const auto keys = std::make_shared<proxy::KeySequence>(widget, nextStroke);
    const proxy::KeySequence& handled = *keys;
    keys->run([&] { replyEarly(replyOf([&] { return replyAfter(handled, className); })); });
    return replyAfter(handled, className);
}

// Sends keys to a widget, but first prepares the window for them, and gives the focus to the widget that a locator names.
QByteArray withKeyboard(
    const Request& request, STApplicationProxy& registry, const proxy::KeySequence::NextStroke& nextStroke)
{
    return withWidget(request, [&](QWidget* found) {
        const QPointer<QWidget> widget(found);
        const bool isLocated = !request.section(2).isEmpty();
        const QString reason = isLocated ? focusRefusal(widget) : QString();
        if (!reason.isEmpty())
            return notYet(reason);
        registry.prepare(widget);
        const bool isFocused = widget && (!isLocated || takeFocus(widget, Qt::OtherFocusReason));
        if (!widget)
            proxy::raiseError(proxy::deadWidgetMessage);
        if (!isFocused)
            return notYet(QLatin1String(focusLostReason));
        return send(widget, nextStroke);
    });
}

using MakeEvents = proxy::KeyEvents (*)(const proxy::KeyStroke& stroke);

struct ModeRow
{
    const char* word;
    MakeEvents make;
};

const ModeRow modeRows[] = {
    {"", proxy::Keyboard::click},
    {"press", proxy::Keyboard::press},
    {"release", proxy::Keyboard::release},
};

MakeEvents modeNamed(const QString& word)
{
    for (const ModeRow& row : modeRows) {
        if (word == QLatin1String(row.word))
            return row.make;
    }
    proxy::raiseError("Unknown mode \"%s\"", word);
}

} // namespace

QByteArray pressKeys(const Request& request, STApplicationProxy& registry)
{
    const std::vector<proxy::KeyStroke> strokes = proxy::keyStrokes(request.utf8Text(3));
    const MakeEvents make = modeNamed(request.utf8Text(4));
    if (make != proxy::Keyboard::click && strokes.size() > 1)
        proxy::raiseError("Only one key stroke can be held");
    std::size_t position = 0;
    return withKeyboard(
        request, registry, [&] { return position < strokes.size() ? make(strokes[position++]) : proxy::KeyEvents(); });
}

QByteArray typeText(const Request& request, STApplicationProxy& registry)
{
    const QString text = request.utf8Text(3);
    if (text.size() > maximumCharacters)
        proxy::raiseError("At most %d characters are typed at a time", maximumCharacters);
    int position = 0;
    return withKeyboard(request, registry, [&] {
        return position < text.size() ? proxy::Keyboard::type(proxy::takeKeyStroke(text, position))
                                      : proxy::KeyEvents();
    });
}

QByteArray turnWheel(const Request& request, STApplicationProxy& registry)
{
    const QString command = request.utf8Text(3);
    return withWidget(request, [&](QWidget* found) {
        const QPointer<QWidget> widget(found);
        const QByteArray reply = classReply(widget);
        const QStringList parts = proxy::firstParts(command, QLatin1Char(':'), 2);
        const QPoint point = proxy::pointAtShares(widget->rect(), parts.value(0), parts.value(1), 1);
        const QString obstacle = prepareForMouse(*registry.proxyFor(widget, QString()), {widget, point});
        if (!obstacle.isEmpty())
            return notYet(obstacle);
        if (!widget)
            proxy::raiseError(proxy::deadWidgetMessage);
        registry.wheelAction(widget, command);
        return reply;
    });
}

QByteArray focusWidget(const Request& request, STApplicationProxy& registry)
{
    return withWidget(request, [&](QWidget* found) {
        const QPointer<QWidget> widget(found);
        const QString reason = focusRefusal(widget);
        if (!reason.isEmpty())
            return notYet(reason);
        const QByteArray reply = classReply(widget);
        registry.prepare(widget);
        const bool isFocused = widget && takeFocus(widget, Qt::TabFocusReason);
        if (!widget)
            proxy::raiseError(proxy::deadWidgetMessage);
        return isFocused ? reply : notYet(QLatin1String(focusLostReason));
    });
}

QByteArray clipboardText(const Request& request, STApplicationProxy&)
{
    if (!request.has(1))
        return replyForValue(QApplication::clipboard()->text());
    QApplication::clipboard()->setText(request.utf8Text(1));
    return "0,";
}

} // namespace agent
