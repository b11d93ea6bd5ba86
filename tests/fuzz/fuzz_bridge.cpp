// The slots that scripts call, by name, as a script calls them. The first line of the input is a hierarchical name, its
// elements joined by "/", "?" for a null one; the second says how to search: "h" hidden ones too, "t" by the title, "w"
// that is a pattern, "p" there is a name provider, digits the number of the widget to search in, "d" which has been
// deleted since. The third is the title, and the others describe the widgets (bridge/describedtree.h). Rules: each slot
// answers, finds and tells the error as a slow and obvious reading of its rules does; what is gone is no widget.

#include "bridge/cpytestproxy.h"
#include "bridge/describedtree.h"
#include "bridge/naivebridge.h"
#include "bridge/nameprovider.h"
#include "fuzzing.h"
#include "names/naivelookup.h"

#include <QApplication>
#include <QWidget>
#include <QtCore/QRegularExpression>
#include <QtCore/QVariant>

using fuzzing::check;
using LmSquishProxy::CPyTestProxy;

namespace {

const char objectName[] = "LmSquishProxy";

CPyTestProxy& scriptObject()
{
    static auto* object = new CPyTestProxy(objectName);
    return *object;
}

class PropertyProvider final : public LmSquishProxy::NameProvider
{
public:
    explicit PropertyProvider(bool isWanted) { LmSquishProxy::setNameProvider(isWanted ? this : nullptr); }
    ~PropertyProvider() { LmSquishProxy::setNameProvider(nullptr); }
    Q_DISABLE_COPY(PropertyProvider)

    QString name(const QObject* object) override { return object->property("providedName").toString(); }
};

template <class Result, class... Arguments>
Result call(const char* slot, Arguments... arguments)
{
    Result result = Result();
    const bool isCalled = QMetaObject::invokeMethod(&scriptObject(), slot, Qt::DirectConnection,
        QReturnArgument<Result>(QMetaType::fromType<Result>().name(), result), arguments...);
    check(isCalled, "a slot can be called by its name", QLatin1String(slot));
    return result;
}

// Elements from the text; an empty text is the empty list.
QStringList elementsOf(const QString& text)
{
    QStringList elements = text.isEmpty() ? QStringList() : text.split(QLatin1Char('/'));
    for (QString& element : elements) {
        if (element == QLatin1String("?"))
            element = QString();
    }
    return elements;
}

naive::Search searchOf(const QStringList& lines, const std::vector<Described>& all)
{
    const QString how = lines.value(1);
    const auto says = [&how](char sign) { return how.contains(QLatin1Char(sign)); };
    naive::Search search;
    search.name = elementsOf(lines.first());
    if (says('t'))
        search.title = lines.value(2) + QLatin1String("");
    search.onlyVisible = !says('h');
    search.hasPatternTitle = says('w');
    search.hasProvider = says('p');
    static const QRegularExpression digits(QStringLiteral("[0-9]{1,2}"));
    const QRegularExpressionMatch number = digits.match(how);
    const int window = number.captured().toInt();
    if (number.hasMatch() && window < static_cast<int>(all.size())
        && all.at(static_cast<std::size_t>(window)).kind != Described::Kind::TrayIcon)
        search.window = window;
    search.isWindowGone = search.window >= 0 && says('d');
    return search;
}

void checkSearch(
    const DescribedTree& tree, const std::vector<Described>& all, const naive::Search& search, const QString& detail)
{
    QWidget* window = tree.widgetAt(search.window);
    if (search.isWindowGone) {
        window = new QWidget;
        delete window;
    }
    auto* const found
        = call<QWidget*>("findWidgetByHierarchicalName", Q_ARG(QStringList, search.name), Q_ARG(QString, search.title),
            Q_ARG(QWidget*, window), Q_ARG(bool, search.onlyVisible), Q_ARG(bool, search.hasPatternTitle));
    const auto error = call<QString>("getLastError");
    // Sets of characters, and what takes the sense of a sign away, are Qt's to judge.
    if (search.hasPatternTitle && search.title.contains(QRegularExpression(QStringLiteral("[\\[\\]\\\\]"))))
        return;
    const naive::Outcome expected = naive::findHierarchically(all, search);
    const QString outcome = error + QLatin1String(", expected ") + expected.error + QLatin1Char('\n') + detail;
    check(error == expected.error, "how a search ends", outcome);
    const bool isScriptObject = expected.number >= 0 && !tree.at(expected.number);
    check(found == (isScriptObject ? &scriptObject() : tree.widgetAt(expected.number)), "what a search finds", outcome);
}

// The same rules as those of requests; the names that these know are other ones.
void checkPath(const QString& windowName, const QString& path, const QString& detail)
{
    static const char* const errors[]
        = {"NoError", "WindowNotFoundError", "WindowAmbiguousError", "WindowNotActivePopupError",
            "WindowNotActiveModalError", "WidgetNotFoundError", "WidgetNotVisibleError", "WidgetAmbiguousError"};
    const QString last = path.section(QLatin1Char('/'), -1);
    if (last == QLatin1String("ActivePopupWidget") || last == QLatin1String("FocusWidget"))
        return;
    auto* const found
        = call<QWidget*>("getWidget", Q_ARG(QString, windowName), Q_ARG(QString, path), Q_ARG(bool, false));
    const auto error = call<QString>("getLastPyTestError");
    QWidget* window = nullptr;
    const int count = naive::findWindow(window, windowName);
    identify::WidgetLookup expected;
    if (count == 1)
        expected = naive::findWidget(window, path);
    const int number = count == 1 ? static_cast<int>(expected.error) : count < 1 ? 1 : 2;
    check(error == QLatin1String(errors[number]), "how a search by a path ends", error + QLatin1Char('\n') + detail);
    check(found == (number == 0 ? expected.widget : nullptr), "what a search by a path finds", detail);
}

void checkPositions(const DescribedTree& tree, const std::vector<Described>& all, const QString& detail)
{
    const struct
    {
        const char* slot;
        Described::Kind kind;
    } slots_[] = {{"getCheckBoxCheckClickPos", Described::Kind::CheckBox},
        {"getGroupBoxCheckClickPos", Described::Kind::GroupBox},
        {"getRadioButtonClickPos", Described::Kind::RadioButton}};
    for (std::size_t i = 0; i < all.size(); ++i) {
        QWidget* widget = tree.widgetAt(static_cast<int>(i));
        for (const auto& slot : slots_) {
            const auto position = call<QPoint>(slot.slot, Q_ARG(QWidget*, widget));
            const bool isOfKind = widget && all.at(i).kind == slot.kind;
            check(isOfKind || position == QPoint(-1, -1), "nothing else has a position to click at", detail);
            check(!isOfKind || slot.kind == Described::Kind::GroupBox || widget->rect().contains(position),
                "the position to click at is in the widget", detail);
        }
        check(!call<bool>("isDockWidgetActive", Q_ARG(QWidget*, widget)), "what is no dock widget", detail);
        check(!call<QWidget*>("getActivatedSiblingDockWidget", Q_ARG(QWidget*, widget)), "what is no dock widget",
            detail);
    }
}

void checkTrayIcon(
    const DescribedTree& tree, const std::vector<Described>& all, const QString& name, const QString& detail)
{
    auto* const found = call<QObject*>("findTrayIcon", Q_ARG(QString, name));
    const naive::Outcome expected = naive::findTrayIcon(all, name);
    check(call<QString>("getLastError") == expected.error, "how the search for a tray icon ends", detail);
    check(found == tree.at(expected.number), "the tray icon of a name", detail);
}

} // namespace

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    scriptObject();
    const QStringList lines = fuzzing::linesOf(data, size);
    const QString detail
        = fuzzing::printable(lines.join(QLatin1String("\n"))).replace(QLatin1String("\\u000a"), QLatin1String("\n"));
    std::vector<Described> all = describedBy(lines.mid(3));
    const DescribedTree tree(all);
    const naive::Search search = searchOf(lines, all);
    const PropertyProvider provider(search.hasProvider);
    // The object itself is a window, too, and never shown.
    Described self;
    self.name = QLatin1String(objectName);
    self.isWindow = self.isHidden = true;
    all.push_back(self);
    checkSearch(tree, all, search, detail);
    all.pop_back();
    checkPath(lines.value(2), lines.first(), detail);
    checkPositions(tree, all, detail);
    checkTrayIcon(tree, all, lines.first(), detail);
    return 0;
}
