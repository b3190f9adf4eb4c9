#pragma once

#include "platform/KeyboardLayout.h"

#include <QKeyEvent>

namespace ostrelle {

/// The three keys of a US board that the defaults and most tests need. Its key events carry the virtual code itself.
class FakeKeyboardLayout final : public KeyboardLayout
{
    Q_OBJECT
public:
    using KeyboardLayout::KeyboardLayout;

    QMap<quint32, QString> keyNames() const override { return m_names; }
    std::optional<quint32> keyCodeOf(const QKeyEvent &event) const override { return event.nativeVirtualKey(); }

private:
    const QMap<quint32, QString> m_names{{6, QStringLiteral("Z")}, {8, QStringLiteral("C")}, {9, QStringLiteral("V")}};
};

} // namespace ostrelle
