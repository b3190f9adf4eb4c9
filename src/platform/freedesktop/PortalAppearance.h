#pragma once

#include "platform/DesktopAppearance.h"

#include <QProperty>

class QDBusMessage;
class QVariant;

namespace ostrelle {

/// The desktop's wishes from org.freedesktop.portal.Settings. They arrive after construction; until then, and without a
/// bus or a portal, the values are those of DesktopAppearance. Main thread.
class PortalAppearance final : public DesktopAppearance
{
    Q_OBJECT
public:
    explicit PortalAppearance(QObject *parent = nullptr);

    QBindable<bool> isDark() override { return QBindable<bool>(&m_isDark); }
    QBindable<bool> prefersMoreContrast() override { return QBindable<bool>(&m_prefersMoreContrast); }
    QBindable<bool> prefersReducedMotion() override { return QBindable<bool>(&m_prefersReducedMotion); }

private Q_SLOTS:
    void handleChange(const QDBusMessage &message);

private:
    void apply(const QString &space, const QString &key, const QVariant &value);

    bool m_hasAnimations = true;
    bool m_asksForLessMotion = false;
    QProperty<bool> m_isDark{true};
    QProperty<bool> m_prefersMoreContrast{false};
    QProperty<bool> m_prefersReducedMotion{false};
};

} // namespace ostrelle
