#include "support/FakeHotKeys.h"

#include <utility>

namespace ostrelle {

void FakeHotKeys::set(const QList<HotKey> &keys)
{
    const QList<HotKey> before = std::exchange(m_keys, keys);
    const QMap<int, State> states = std::exchange(m_states, {});
    for (const HotKey &key : keys) {
        const State fresh = m_handsOutNone ? State::OnlyByCommand : State::Refused;
        m_states[key.id] = before.contains(key) ? states[key.id] : fresh;
    }
    grabMissing();
}

std::optional<HotKeys::State> FakeHotKeys::state(int id) const
{
    const auto found = m_states.find(id);
    return found == m_states.end() ? std::nullopt : std::optional(*found);
}

void FakeHotKeys::holdElsewhere(quint32 keyCode, Qt::KeyboardModifiers modifiers)
{
    m_elsewhere = HotKey{0, keyCode, modifiers, {}, {}};
}

void FakeHotKeys::letGoElsewhere()
{
    m_elsewhere.reset();
}

void FakeHotKeys::askAgain()
{
    const QMap<int, State> before = m_states;
    grabMissing();
    for (const HotKey &key : QList<HotKey>(m_keys)) {
        if (before[key.id] != m_states[key.id]) {
            Q_EMIT stateChanged(key.id);
        }
    }
}

void FakeHotKeys::press(quint32 keyCode, Qt::KeyboardModifiers modifiers)
{
    for (const HotKey &key : std::as_const(m_keys)) {
        if (key.keyCode == keyCode && key.modifiers == modifiers && m_states[key.id] == State::Granted &&
            std::exchange(m_heldId, key.id) != key.id) {
            QMetaObject::invokeMethod(
                this, [this, id = key.id] { Q_EMIT pressed(id, {QStringLiteral("pressed")}); }, Qt::QueuedConnection);
        }
    }
}

bool FakeHotKeys::isHeldElsewhere(const HotKey &key) const
{
    return m_elsewhere && m_elsewhere->keyCode == key.keyCode && m_elsewhere->modifiers == key.modifiers;
}

void FakeHotKeys::grabMissing()
{
    for (const HotKey &key : std::as_const(m_keys)) {
        if (m_states[key.id] == State::Refused && !isHeldElsewhere(key)) {
            m_states[key.id] = State::Granted;
        }
    }
}

} // namespace ostrelle
