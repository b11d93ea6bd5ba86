#include "tastingpad.h"

#include "journal.h"

#include <QKeySequence>
#include <QMouseEvent>
#include <QPainter>

namespace {

/// "Ctrl+Shift+" and the like, or nothing.
QString modifierWords(Qt::KeyboardModifiers modifiers)
{
    const struct
    {
        Qt::KeyboardModifier modifier;
        const char* word;
    } rows[] = {{Qt::ControlModifier, "Ctrl+"}, {Qt::ShiftModifier, "Shift+"}, {Qt::AltModifier, "Alt+"},
        {Qt::MetaModifier, "Meta+"}};
    QString words;
    for (const auto& row : rows) {
        if (modifiers & row.modifier)
            words += QLatin1String(row.word);
    }
    return words;
}

QLatin1String buttonWord(Qt::MouseButton button)
{
    switch (button) {
    case Qt::LeftButton:
        return QLatin1String("left");
    case Qt::RightButton:
        return QLatin1String("right");
    case Qt::MiddleButton:
        return QLatin1String("middle");
    default:
        return QLatin1String("other");
    }
}

bool isModifierKey(int key)
{
    return key == Qt::Key_Control || key == Qt::Key_Shift || key == Qt::Key_Alt || key == Qt::Key_Meta
        || key == Qt::Key_AltGr;
}

} // namespace

TastingPad::TastingPad(Journal& journal, QWidget* parent)
    : QWidget(parent)
    , m_journal(journal)
{
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(120, 90);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setToolTip(tr("Press, double-click, drag or type here"));
}

QSize TastingPad::sizeHint() const
{
    return QSize(200, 130);
}

void TastingPad::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(hasFocus() ? palette().highlight().color() : palette().mid().color(), 1.5));
    painter.setBrush(palette().base());
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 6, 6);
    const qreal radius = qMin(width(), height()) * 0.38;
    const QPointF centre = QRectF(rect()).center();
    painter.setPen(QPen(QColor(0xd9, 0xc6, 0xab), 5));
    painter.setBrush(QColor(0x6f, 0x45, 0x24));
    painter.drawEllipse(centre, radius, radius);
    if (!m_spot.isNull()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0xe8, 0xc8, 0x9a));
        painter.drawEllipse(m_spot, 4, 4);
    }
}

void TastingPad::record(const char* what, const QMouseEvent& event)
{
    m_spot = event.pos();
    update();
    m_journal.record(what, objectName(),
        modifierWords(event.modifiers()) + buttonWord(event.button())
            + QString::fromLatin1(" %1,%2").arg(m_spot.x()).arg(m_spot.y()));
}

void TastingPad::mousePressEvent(QMouseEvent* event)
{
    m_pressedAt = event->pos();
    record("pressed", *event);
}

void TastingPad::mouseReleaseEvent(QMouseEvent* event)
{
    record(event->pos() == m_pressedAt ? "released" : "dragged", *event);
}

void TastingPad::mouseDoubleClickEvent(QMouseEvent* event)
{
    m_pressedAt = event->pos();
    record("double-clicked", *event);
}

void TastingPad::keyPressEvent(QKeyEvent* event)
{
    if (isModifierKey(event->key()))
        return QWidget::keyPressEvent(event);
    m_journal.record("key", objectName(), modifierWords(event->modifiers()) + QKeySequence(event->key()).toString());
}
