#pragma once

#include "platform/PointerNear.h"

#include <QPointF>

namespace ostrelle {

/// A pointer that a test moves. Its position is unknown until then.
class FakePointerNear final : public PointerNear
{
    Q_OBJECT
public:
    using PointerNear::PointerNear;

    Answer isWithin(const QRectF &rect) const override;
    std::optional<QString> screen() const override { return m_screen; }
    void watchScreen(bool on) override { m_isWatching = on; }

    /// In the panel's coordinates.
    void moveTo(const QPointF &position) { m_position = position; }
    /// The pointer is on that screen now; announced while watched.
    void moveToScreen(const QString &name);
    /// As on a desktop that does not tell.
    void forget();
    bool isWatchingScreen() const { return m_isWatching; }

private:
    std::optional<QPointF> m_position;
    std::optional<QString> m_screen;
    bool m_isWatching = false;
};

} // namespace ostrelle
