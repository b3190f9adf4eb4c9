#pragma once

#include "platform/ActivationToken.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QtGlobal>

#include <optional>

namespace ostrelle {

/// A key combination that is to be heard whatever program is in front.
struct HotKey
{
    int id = 0;
    quint32 keyCode = 0;             ///< an ANSI board's virtual key: a place on the board, not a letter
    Qt::KeyboardModifiers modifiers; ///< Meta stands for the Super key
    QString name;                    ///< the desktop remembers by it what the user has decided; never changes
    QString description;             ///< shown where the user decides

    bool operator==(const HotKey &) const = default;
};

/// The desktop's hot keys. A held key counts once, however long it is held, and counts when it goes down. Main thread.
class HotKeys : public QObject
{
    Q_OBJECT
public:
    enum class State {
        Granted,
        Refused,      ///< another program has it, or the board has no such key; asked for again when that may change
        UserDecides,  ///< asked, not answered yet
        OnlyByCommand ///< this desktop hands out no hot keys; the user may bind a command in its settings
    };
    Q_ENUM(State)

    using QObject::QObject;

    /// The whole set, in place of the former one. What is in both stays as it is, unless it was refused.
    virtual void set(const QList<HotKey> &keys) = 0;
    /// Nothing for an id that is not in the set.
    virtual std::optional<State> state(int id) const = 0;

Q_SIGNALS:
    /// Not from within set().
    void stateChanged(int id);
    /// From the event loop, never from inside the desktop's own event handling.
    void pressed(int id, const ActivationToken &token);
};

} // namespace ostrelle
