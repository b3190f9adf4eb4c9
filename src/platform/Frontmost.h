#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace ostrelle {

/// An application as the desktop knows it.
struct Application
{
    /// Everything it is known by, most specific first: sandbox identifier, desktop file, window class, and the
    /// reverse-DNS identifiers that this platform's names of password managers and keyrings stand for.
    QStringList identifiers;
    QString name; ///< empty when unknown

    friend bool operator==(const Application &, const Application &) = default;
};

/// The last *other* application that was active.
class Frontmost
{
public:
    virtual ~Frontmost() = default;

    /// Nothing when none was active yet or it cannot be known here.
    virtual std::optional<Application> application() const = 0;
};

} // namespace ostrelle
