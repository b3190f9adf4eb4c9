#pragma once

#include "platform/DragOut.h"

#include <QPointer>
#include <QWidget>

namespace ostrelle {

/// Drags out of the program that a test ends. Like a desktop it has one at a time, and answers never from within
/// start().
class FakeDragOut final : public DragOut
{
public:
    void start(QWidget &source, const FileDrag &drag, std::function<void(Outcome)> ended) override;
    void startText(QWidget &source, const TextDrag &drag, std::function<void(Outcome)> ended) override;

    /// The user lets go, or gives up.
    void end(Outcome outcome);

    bool isRunning() const { return m_ended != nullptr; }
    int count() const { return m_count; }
    /// The last one.
    const FileDrag &drag() const { return m_drag; }
    const TextDrag &textDrag() const { return m_textDrag; }

private:
    bool begin(QWidget &source, std::function<void(Outcome)> ended);

    QPointer<QWidget> m_source;
    FileDrag m_drag;
    TextDrag m_textDrag;
    std::function<void(Outcome)> m_ended;
    int m_count = 0;
};

} // namespace ostrelle
