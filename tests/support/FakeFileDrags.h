#pragma once

#include "platform/FileDrags.h"

#include <optional>

namespace ostrelle {

/// Drags of files over the panel that a test performs. It tells of them in a desktop's order, whatever the test does:
/// nothing without a drag over the panel, nothing twice, dropped only while accepted.
class FakeFileDrags final : public FileDrags
{
    Q_OBJECT
public:
    using FileDrags::FileDrags;

    void setAccepted(bool accepted) override { m_isAccepted = accepted && m_isOver; }

    /// The pointer brings files over the panel; what they are is told later.
    void enter(const QPointF &position);
    /// The source gives its list.
    void know(const QStringList &paths);
    /// Both.
    void enter(const QPointF &position, const QStringList &paths);
    void moveTo(const QPointF &position);
    void leave();
    /// Lets go; a source that has not given its list by now has none.
    void drop();

    bool isOver() const { return m_isOver; }
    bool isAccepted() const { return m_isAccepted; }

private:
    void end();

    QPointF m_position;
    std::optional<QStringList> m_paths;
    bool m_isOver = false;
    bool m_isAccepted = false;
};

} // namespace ostrelle
