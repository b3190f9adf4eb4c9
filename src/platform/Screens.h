#pragma once

#include <QList>
#include <QObject>
#include <QRectF>
#include <QString>

#include <optional>

namespace ostrelle {

/// One screen, compared by value; known by its name.
struct Screen
{
    QString name;
    QRectF frame;            ///< global logical pixels
    double scale = 1;        ///< device pixels per logical pixel
    double topBarHeight = 0; ///< what docks reserve at its top edge, logical pixels, 0 when nothing
    double refreshRate = 60; ///< Hz

    friend bool operator==(const Screen &, const Screen &) = default;
};

class Screens : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// In the desktop's order.
    virtual QList<Screen> all() const = 0;
    /// The desktop's main screen; nothing when there is no screen.
    virtual std::optional<Screen> primary() const = 0;

    std::optional<Screen> named(const QString &name) const;

Q_SIGNALS:
    /// Screens were added, removed, rearranged or rescaled, or a top bar changed.
    void changed();
};

} // namespace ostrelle
