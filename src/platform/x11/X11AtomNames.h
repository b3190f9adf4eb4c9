#pragma once

#include "platform/x11/WatchConnection.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>

#include <functional>

namespace ostrelle {

/// Names of atoms, asked without waiting and remembered. Main thread.
class X11AtomNames : public QObject
{
    Q_OBJECT
public:
    struct Named
    {
        xcb_atom_t atom = XCB_ATOM_NONE;
        QByteArray name;
    };

    explicit X11AtomNames(WatchConnection &connection);

    /// Answers from the event loop, in the given order without what is no atom, unless `context` is gone by then.
    void resolve(const QList<xcb_atom_t> &atoms, QObject *context, std::function<void(QList<Named>)> answer);

private:
    QList<Named> known(const QList<xcb_atom_t> &atoms) const;

    WatchConnection &m_connection;
    QHash<xcb_atom_t, QByteArray> m_names;
};

} // namespace ostrelle
