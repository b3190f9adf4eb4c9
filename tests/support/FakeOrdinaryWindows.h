#pragma once

#include "platform/OrdinaryWindows.h"
#include "platform/OwnFrame.h"

#include <QPointer>
#include <QWidget>

namespace ostrelle {

/// Shows windows offscreen, counts how often one was brought to the front, and has whatever compositor a test wants.
class FakeOrdinaryWindows final : public OrdinaryWindows
{
public:
    void present(QWidget &window, const ActivationToken &) override
    {
        window.show();
        window.activateWindow();
        ++m_count;
    }
    bool leavesRoomForShadows() const override { return true; }
    std::unique_ptr<OwnFrame> makeOwnFrame(QWidget &, const QPainterPath &) override
    {
        auto frame = std::make_unique<Frame>(m_backing);
        m_frame = frame.get();
        return frame;
    }

    int count() const { return m_count; }
    void setBacking(OwnFrame::Backing backing)
    {
        m_backing = backing;
        if (m_frame)
            m_frame->set(backing);
    }

private:
    class Frame : public OwnFrame
    {
    public:
        explicit Frame(Backing backing)
            : m_backing(backing)
        {
        }
        Backing backing() const override { return m_backing; }
        void set(Backing backing)
        {
            m_backing = backing;
            Q_EMIT backingChanged();
        }

    private:
        Backing m_backing;
    };

    int m_count = 0;
    OwnFrame::Backing m_backing = OwnFrame::Backing::Translucent;
    QPointer<Frame> m_frame;
};

} // namespace ostrelle
