#include "platform/x11/X11AtomNames.h"

#include <QPointer>

#include <utility>

namespace ostrelle {

namespace {

/// Programs use some hundred types between them; a program that invents more is not worth the memory.
constexpr qsizetype kMostNames = 4096;

} // namespace

X11AtomNames::X11AtomNames(WatchConnection &connection)
    : m_connection(connection)
{
}

void X11AtomNames::resolve(const QList<xcb_atom_t> &atoms, QObject *context, std::function<void(QList<Named>)> answer)
{
    if (m_names.size() > kMostNames) {
        m_names.clear();
    }
    auto deliver = [this, atoms, guard = QPointer<QObject>(context), answer = std::move(answer)] {
        if (guard) {
            answer(known(atoms));
        }
    };
    unsigned int last = 0;
    QList<std::pair<unsigned int, xcb_atom_t>> asked;
    for (const xcb_atom_t atom : atoms) {
        if (atom != XCB_ATOM_NONE && !m_names.contains(atom)) {
            last = xcb_get_atom_name(m_connection.xcb(), atom).sequence;
            asked.emplace_back(last, atom);
        }
    }
    if (asked.isEmpty()) {
        QMetaObject::invokeMethod(this, std::move(deliver), Qt::QueuedConnection);
        return;
    }
    for (const auto &[sequence, atom] : std::as_const(asked)) {
        m_connection.whenReplied(sequence, [this, self = QPointer<X11AtomNames>(this), atom = atom,
                                            isLast = sequence == last, deliver](const void *reply) {
            if (!self) {
                return;
            }
            if (const auto *name = static_cast<const xcb_get_atom_name_reply_t *>(reply)) {
                m_names.insert(atom, QByteArray(xcb_get_atom_name_name(name), xcb_get_atom_name_name_length(name)));
            }
            if (isLast) { // answers come in the order of the questions
                deliver();
            }
        });
    }
}

QList<X11AtomNames::Named> X11AtomNames::known(const QList<xcb_atom_t> &atoms) const
{
    QList<Named> names;
    for (const xcb_atom_t atom : atoms) {
        if (const auto found = m_names.constFind(atom); found != m_names.constEnd()) {
            names << Named{atom, *found};
        }
    }
    return names;
}

} // namespace ostrelle
