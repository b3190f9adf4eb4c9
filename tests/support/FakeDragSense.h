#pragma once

#include "platform/DragSense.h"

namespace ostrelle {

/// A mouse button and a drag that a test performs.
class FakeDragSense final : public DragSense
{
    Q_OBJECT
public:
    using DragSense::DragSense;

    qint64 changeCount() const override { return m_changeCount; }
    qint64 countAtPress() const override { return m_countAtPress; }
    Answer isButtonHeld() const override { return m_button; }

    void press()
    {
        m_button = Answer::Yes;
        m_countAtPress = m_changeCount;
    }
    void release() { m_button = Answer::No; }
    /// Something with data is dragged with the pressed button.
    void beginDrag();
    /// As on a desktop that does not tell which buttons are held.
    void forgetButton() { m_button = Answer::Unknown; }

private:
    qint64 m_changeCount = 0;
    qint64 m_countAtPress = 0;
    Answer m_button = Answer::No;
};

} // namespace ostrelle
