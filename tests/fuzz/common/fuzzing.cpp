#include "fuzzing.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>

namespace fuzzing {

void check(bool holds, const char* rule, const QString& detail)
{
    if (holds)
        return;
    std::fprintf(stderr, "broken rule: %s\n%s\n", rule, detail.toUtf8().constData());
    std::abort();
}

QString printable(const QString& text)
{
    QString result;
    for (const QChar character : text) {
        const ushort code = character.unicode();
        if (code >= 32 && code < 127)
            result += character;
        else
            result += QLatin1String("\\u") + QString::number(code, 16).rightJustified(4, QLatin1Char('0'));
    }
    return result;
}

QString shown(const QString& text)
{
    return text.section(QChar(0), 0, 0);
}

QString textOf(const uint8_t* data, std::size_t size)
{
    const QString raw = QString::fromLatin1(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const int escapeLength = 6;
    QString text;
    for (int i = 0; i < raw.size(); ++i) {
        bool ok = false;
        const ushort code
            = raw.mid(i, 2) == QLatin1String("\\u") ? raw.mid(i + 2, escapeLength - 2).toUShort(&ok, 16) : 0;
        text += ok ? QChar(code) : raw.at(i);
        if (ok)
            i += escapeLength - 1;
    }
    return text;
}

QStringList linesOf(const uint8_t* data, std::size_t size)
{
    return textOf(data, size).split(QLatin1Char('\n'));
}

} // namespace fuzzing

namespace {

// All other messages are about what the offscreen platform lacks.
void tellFailedAssertions(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtFatalMsg)
        std::fprintf(stderr, "broken rule: %s\n", message.toLocal8Bit().constData());
}

} // namespace

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerInitialize(int*, char***)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_NO_GLIB", "1"); // the dispatcher that the virtual clock knows
    qInstallMessageHandler(tellFailedAssertions);
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    new QApplication(argc, argv); // never deleted: what the targets keep until the end needs it
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setStyle(QLatin1String("windows")); // the quickest to draw
    return 0;
}

// Memory that applications and Qt itself keep until the end is no leak of the agent's. Short stack traces of allocations save a
// third of the time; ASAN_OPTIONS=malloc_context_size=30 has them in full where a finding is looked into.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options()
{
    return "detect_leaks=0:malloc_context_size=2:quarantine_size_mb=32";
}
