#pragma once

#include <QObject>
#include <QRectF>
#include <QString>

#include <optional>

namespace ostrelle {

enum class Answer { Yes, No, Unknown };

/// Where the pointer is, as far as it can be known. Main thread.
class PointerNear : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Whether the pointer is within `rect`, in the panel widget's coordinates.
    virtual Answer isWithin(const QRectF &rect) const = 0;
    /// Name of the screen under the pointer, where it is known.
    virtual std::optional<QString> screen() const = 0;
    /// While on, screenChanged tells that the pointer reached another screen. Off costs nothing.
    virtual void watchScreen(bool on) = 0;

Q_SIGNALS:
    void screenChanged(const QString &name);
};

} // namespace ostrelle
