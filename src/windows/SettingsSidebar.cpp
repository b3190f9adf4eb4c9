#include "windows/SettingsSidebar.h"

#include "foundation/MakeChild.h"
#include "notch/AccessibleRole.h"
#include "notch/NotchAppearance.h"
#include "windows/SidebarGround.h"
#include "windows/SidebarRow.h"
#include "windows/WindowColors.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace ostrelle {
namespace {

using namespace std::chrono_literals;

constexpr int kPaddingTop = 13;
constexpr int kPaddingSide = 10;
constexpr int kGap = 2;
constexpr double kEdge = 0.75;
/// Letters typed sooner after each other belong together.
constexpr auto kTypingPause = 1s;

} // namespace

SettingsSidebar::SettingsSidebar(const ControlContext &context, SettingsSection section, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
{
    setAccessibleRole(*this, QAccessible::Grouping);
    setAccessibleName(QStringLiteral("Sections"));
    for (const SettingsSection each : kAllSettingsSections) {
        auto &row = makeChild<SidebarRow>(this, context, each);
        connect(&row, &QAbstractButton::clicked, this, [this, each] { Q_EMIT chosen(each); });
        m_rows.push_back(&row);
    }
    setSection(section);
    connect(&context.appearance, &NotchAppearance::changed, this, [this] {
        m_ground = {};
        update();
    });
}

void SettingsSidebar::setSection(SettingsSection section)
{
    for (SidebarRow *row : m_rows) {
        if (row->section() == section)
            row->setChecked(true);
    }
}

std::size_t SettingsSidebar::current() const
{
    const auto found =
        std::find_if(m_rows.begin(), m_rows.end(), [](const SidebarRow *row) { return row->isChecked(); });
    return static_cast<std::size_t>(found - m_rows.begin());
}

void SettingsSidebar::takeFocus(Qt::FocusReason reason)
{
    m_rows[current()]->setFocus(reason);
}

void SettingsSidebar::choose(std::size_t index)
{
    if (index >= m_rows.size() || index == current())
        return;
    m_rows[index]->setFocus(Qt::TabFocusReason);
    m_rows[index]->click();
}

void SettingsSidebar::chooseByTyping(const QString &text)
{
    const MonotonicTime now = m_context.clock.now();
    const bool goesOn = now - std::exchange(m_lastTyped, now) < kTypingPause;
    m_typed = (goesOn ? m_typed : QString()) + text;
    // The same letter again goes on to the next title that starts with it.
    const bool repeats = m_typed.count(m_typed.front(), Qt::CaseInsensitive) == m_typed.size();
    const QString start = repeats ? m_typed.left(1) : m_typed;
    const std::size_t first = current() + (start.size() == 1 ? 1 : 0);
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        const std::size_t index = (first + i) % m_rows.size();
        if (title(m_rows[index]->section()).startsWith(start, Qt::CaseInsensitive)) {
            choose(index);
            return;
        }
    }
}

void SettingsSidebar::keyPressEvent(QKeyEvent *event)
{
    const bool isPlain = (event->modifiers() & ~Qt::ShiftModifier & ~Qt::KeypadModifier) == Qt::NoModifier;
    switch (event->key()) {
    case Qt::Key_Up:
        choose(current() - 1); // before the first one there is nothing: it wraps to a number that no row has
        return;
    case Qt::Key_Down:
        choose(current() + 1);
        return;
    case Qt::Key_Home:
        choose(0);
        return;
    case Qt::Key_End:
        choose(m_rows.size() - 1);
        return;
    default:
        break;
    }
    if (isPlain && !event->text().isEmpty() && event->text().front().isLetter())
        chooseByTyping(event->text());
    else
        event->ignore();
}

void SettingsSidebar::resizeEvent(QResizeEvent *)
{
    m_ground = {};
    int y = kPaddingTop;
    for (SidebarRow *row : m_rows) {
        row->setGeometry(kPaddingSide, y, width() - 2 * kPaddingSide, row->height());
        y += row->height() + kGap;
    }
}

void SettingsSidebar::paintEvent(QPaintEvent *)
{
    const NotchAppearance &appearance = m_context.appearance;
    if (m_ground.isNull() || m_ground.devicePixelRatio() != devicePixelRatioF())
        m_ground =
            sidebarGround(size(), devicePixelRatioF(), appearance.theme(), appearance.scheme(), appearance.contrast());
    QPainter painter(this);
    painter.drawImage(0, 0, m_ground);
    const double thickness = std::max(kEdge, 1 / devicePixelRatioF());
    painter.fillRect(QRectF(width() - thickness, 0, thickness, height()), WindowColors::of(appearance).hairline);
}

} // namespace ostrelle
