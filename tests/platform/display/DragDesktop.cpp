#include "DragDesktop.h"

#include "Waiting.h"
#include "platform/PanelHost.h"
#include "platform/Platform.h"
#include "platform/Screens.h"

#include <QPainterPath>

#include <algorithm>
#include <utility>

namespace ostrelle {

using namespace std::chrono_literals;

namespace {

constexpr QPoint kOverPanel{(1920 - 900) / 2 + 450, 30};

} // namespace

DragDesktop::DragDesktop()
    : m_platform(Platform::create(QStringLiteral("x11"), QString()))
    , m_lastBeat(m_time.now())
{
    m_platform->panelHost().attach(m_panel);
    m_platform->panelHost().place(m_platform->screens().primary()->name, QSizeF(300, 100));
    m_platform->panelHost().setInteractiveRect(QRectF(400, 0, 100, 60));
    QPainterPath outline;
    outline.addRect(QRectF(300, 0, 300, 100));
    m_platform->panelHost().setOutline(outline);
    FileDrags &drags = m_platform->fileDrags();
    QObject::connect(&drags, &FileDrags::entered, &m_panel, [this, &drags] {
        ++entered;
        drags.setAccepted(isAccepting);
    });
    QObject::connect(&drags, &FileDrags::left, &m_panel, [this] { ++left; });
    QObject::connect(&drags, &FileDrags::filesKnown, &m_panel, [this](const QStringList &paths) { known << paths; });
    QObject::connect(&drags, &FileDrags::dropped, &m_panel,
                     [this](const QPointF &, const QStringList &paths) { dropped << paths; });
    m_heart = m_time.every(5ms, nullptr, [this] {
        m_longest = std::max(m_longest, m_time.now() - m_lastBeat);
        m_lastBeat = m_time.now();
    });
    m_user.movePointer(QPoint(900, 900));
}

DragDesktop::~DragDesktop()
{
    m_user.button(false); // a failed test must not hold it for the next one
}

std::chrono::milliseconds DragDesktop::longestStandstill()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::exchange(m_longest, MonotonicTime(0)));
}

std::function<bool()> DragDesktop::movingAround(const QPoint &native, std::function<bool()> condition)
{
    return [this, native, condition = std::move(condition), step = 0]() mutable {
        m_user.movePointer(native + QPoint(++step % 20, 0));
        return condition();
    };
}

std::function<bool()> DragDesktop::movingOverPanel()
{
    return movingAround(kOverPanel, [this, before = entered] { return entered > before; });
}

void DragDesktop::moveAround(const QPoint &native, const char *what, const std::function<bool()> &condition)
{
    waitUntil(what, movingAround(native, condition));
}

void DragDesktop::moveOverPanel()
{
    waitUntil("a drag enters the panel", movingOverPanel());
}

void DragDesktop::perform(Steps steps)
{
    constexpr int kMostTries = 1000;
    m_steps = std::move(steps);
    m_performance = m_time.every(20ms, nullptr, [this, next = std::size_t(0), tries = 0]() mutable {
        if (next < m_steps.size() && ++tries < kMostTries) {
            next += m_steps[next]() ? 1U : 0U;
            return;
        }
        letGo();
        m_performance.cancel();
    });
}

void DragDesktop::pickUp(OtherProgram &source)
{
    waitUntil("a source is ready", [&] { return source.hasSaid("ready"); });
    m_user.movePointer(kSource);
    m_user.button(true);
    moveAround(kSource + QPoint(20, 0), "a drag begins", [&] { return source.hasSaid("began"); });
}

OtherProgram dragSource(const QStringList &options)
{
    return OtherProgram(QStringLiteral("drag-source"), options);
}

OtherProgram gtkDrags(const QStringList &arguments)
{
    return OtherProgram(QStringLiteral("/usr/bin/python3"),
                        QStringList(QStringLiteral(OSTRELLE_GTK_DRAGS)) + arguments);
}

} // namespace ostrelle
