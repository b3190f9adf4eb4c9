#pragma once

#include "platform/Screens.h"

namespace ostrelle {

/// Screens that a test arranges. Starts with one: "Fake-1", 1920x1080 at the origin.
class FakeScreens final : public Screens
{
    Q_OBJECT
public:
    explicit FakeScreens(QObject *parent = nullptr);

    QList<Screen> all() const override { return m_all; }
    std::optional<Screen> primary() const override;

    /// Rearranges them; the first is the main screen. Announced only when something changes.
    void arrange(const QList<Screen> &screens);
    static Screen make(const QString &name, const QRectF &frame);

private:
    QList<Screen> m_all;
};

} // namespace ostrelle
