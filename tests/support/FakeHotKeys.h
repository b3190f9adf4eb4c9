#pragma once

#include "platform/HotKeys.h"

#include <QMap>

namespace ostrelle {

/// Hot keys without a board: a test presses keys, and says what other programs hold.
class FakeHotKeys final : public HotKeys
{
    Q_OBJECT
public:
    using HotKeys::HotKeys;

    void set(const QList<HotKey> &keys) override;
    std::optional<State> state(int id) const override;

    /// Another program takes these keys, or lets them go, which the desktop does not tell.
    void holdElsewhere(quint32 keyCode, Qt::KeyboardModifiers modifiers);
    void letGoElsewhere();
    /// A desktop that hands out no hot keys, ever.
    void handOutNone() { m_handsOutNone = true; }
    /// The window manager or the keyboard map has changed: what was refused is asked for again.
    void askAgain();
    /// The user presses the keys and, later, releases them.
    void press(quint32 keyCode, Qt::KeyboardModifiers modifiers);
    void release() { m_heldId = 0; }

    const QList<HotKey> &keys() const { return m_keys; }

private:
    bool isHeldElsewhere(const HotKey &key) const;
    void grabMissing();

    QList<HotKey> m_keys;
    QMap<int, State> m_states;
    std::optional<HotKey> m_elsewhere;
    bool m_handsOutNone = false;
    int m_heldId = 0;
};

} // namespace ostrelle
