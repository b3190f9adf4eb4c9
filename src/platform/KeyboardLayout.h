#pragma once

#include <QMap>
#include <QObject>
#include <QString>
#include <QtGlobal>

#include <optional>

class QKeyEvent;

namespace ostrelle {

/// The user's keyboard: which characters its keys print. Keys are an ANSI board's virtual keys, places on the board.
/// Main thread.
class KeyboardLayout : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// For who runs without a Platform: the names of the layout in use, or of a US board where there is no display.
    static QMap<quint32, QString> currentKeyNames();

    /// Of the keys that carry a character, in upper case, by virtual key code: the layout in use, or where that one has
    /// no Latin letters, the last one in use that has.
    virtual QMap<quint32, QString> keyNames() const = 0;
    /// The place of the key that this event came from; nothing for a key that no such board has.
    virtual std::optional<quint32> keyCodeOf(const QKeyEvent &event) const = 0;

Q_SIGNALS:
    /// keyNames() are others.
    void changed();
};

} // namespace ostrelle
