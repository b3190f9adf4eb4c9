#pragma once

#include <QObject>
#include <QProperty>

namespace ostrelle {

/// The desktop's own wishes about looks, live (settings portal). Without a portal: dark, normal contrast, full motion.
class DesktopAppearance : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    virtual QBindable<bool> isDark() = 0;
    virtual QBindable<bool> prefersMoreContrast() = 0;
    virtual QBindable<bool> prefersReducedMotion() = 0;
};

} // namespace ostrelle
