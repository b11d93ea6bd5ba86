#include "describedtree.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QRadioButton>
#include <QSystemTrayIcon>
#include <QWidget>
#include <QtCore/QVariant>

namespace {

const int most = 16;
const char providedNameProperty[] = "providedName";

QObject* make(Described::Kind kind, QWidget* parent)
{
    switch (kind) {
    case Described::Kind::CheckBox:
        return new QCheckBox(parent);
    case Described::Kind::GroupBox:
        return new QGroupBox(parent);
    case Described::Kind::RadioButton:
        return new QRadioButton(parent);
    case Described::Kind::TrayIcon:
        return new QSystemTrayIcon(parent);
    default:
        return new QWidget(parent);
    }
}

Described described(const QString& text)
{
    const QString kinds = QLatin1String("%$@+");
    Described one;
    int begin = 0;
    bool isProvided = false;
    for (; begin < text.size() && (QLatin1String("-#^") + kinds).contains(text.at(begin)); ++begin) {
        const QChar sign = text.at(begin);
        one.isHidden = one.isHidden || sign == QLatin1Char('-');
        one.isWindow = one.isWindow || sign == QLatin1Char('^');
        isProvided = isProvided || sign == QLatin1Char('#');
        if (kinds.contains(sign))
            one.kind = static_cast<Described::Kind>(kinds.indexOf(sign) + 1);
    }
    const QString name = text.mid(begin).section(QLatin1Char('|'), 0, 0);
    one.title = text.section(QLatin1Char('|'), 1);
    if (!name.isEmpty())
        (isProvided ? one.providedName : one.name) = name;
    return one;
}

} // namespace

std::vector<Described> describedBy(const QStringList& lines)
{
    std::vector<Described> all;
    std::vector<int> ancestors;
    for (const QString& line : lines.mid(0, most)) {
        int level = 0;
        while (line.mid(level, 1) == QLatin1String(">"))
            ++level;
        Described one = described(line.mid(level));
        ancestors.resize(std::min(ancestors.size(), static_cast<std::size_t>(level)));
        one.parent = ancestors.empty() ? -1 : ancestors.back();
        // An object that is no widget has no children, and is no window.
        const bool isWidget = one.kind != Described::Kind::TrayIcon;
        one.isWindow = isWidget && (one.isWindow || one.parent < 0);
        if (isWidget)
            ancestors.push_back(static_cast<int>(all.size()));
        all.push_back(one);
    }
    return all;
}

DescribedTree::DescribedTree(const std::vector<Described>& descriptions)
{
    for (const Described& one : descriptions) {
        QWidget* parent = widgetAt(one.parent);
        QObject* object = make(one.kind, parent);
        objects.push_back(object);
        if (!parent)
            roots.emplace_back(object);
        object->setObjectName(one.name);
        object->setProperty(providedNameProperty, one.providedName);
        if (!object->isWidgetType())
            continue;
        auto* widget = static_cast<QWidget*>(object);
        if (one.isWindow)
            widget->setWindowFlags(Qt::Window);
        widget->setWindowTitle(one.title);
        widget->setUpdatesEnabled(false); // nobody looks
    }
    for (std::size_t i = 0; i < descriptions.size(); ++i) {
        if (QWidget* widget = widgetAt(static_cast<int>(i)))
            widget->setVisible(!descriptions.at(i).isHidden);
    }
}

DescribedTree::~DescribedTree() = default;

QObject* DescribedTree::at(int number) const
{
    const bool isThere = number >= 0 && number < static_cast<int>(objects.size());
    return isThere ? objects.at(static_cast<std::size_t>(number)) : nullptr;
}

QWidget* DescribedTree::widgetAt(int number) const
{
    QObject* object = at(number);
    return object && object->isWidgetType() ? static_cast<QWidget*>(object) : nullptr;
}
