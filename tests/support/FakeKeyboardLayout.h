#pragma once

#include "platform/KeyboardLayout.h"

#include <QKeyEvent>

namespace ostrelle {

/// A board whose layout a test chooses: at first the three keys that the defaults and most tests need, as a US board
/// prints them. Its key events carry the virtual code itself.
class FakeKeyboardLayout final : public KeyboardLayout
{
    Q_OBJECT
public:
    using KeyboardLayout::KeyboardLayout;

    QMap<quint32, QString> keyNames() const override { return m_names; }
    std::optional<quint32> keyCodeOf(const QKeyEvent &event) const override { return event.nativeVirtualKey(); }

    void use(const QMap<quint32, QString> &names)
    {
        m_names = names;
        Q_EMIT changed();
    }

private:
    QMap<quint32, QString> m_names{{6, QStringLiteral("Z")}, {8, QStringLiteral("C")}, {9, QStringLiteral("V")}};
};

} // namespace ostrelle
