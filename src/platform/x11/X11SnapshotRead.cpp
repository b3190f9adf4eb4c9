#include "platform/x11/X11SnapshotRead.h"

#include "platform/freedesktop/ClipboardTypes.h"
#include "platform/x11/X11Frontmost.h"

#include <cstring>
#include <utility>

namespace ostrelle {

namespace {

constexpr qint64 kLongestHint = 1024; // bytes
/// No honest owner has so many; each further one would cost a question to the server.
constexpr qsizetype kMostTargets = 1000;

QList<xcb_atom_t> atomsIn(const QByteArray &bytes)
{
    QList<xcb_atom_t> atoms;
    for (qsizetype at = 0; at + 4 <= bytes.size() && atoms.size() < kMostTargets; at += 4) {
        xcb_atom_t atom = XCB_ATOM_NONE;
        std::memcpy(&atom, bytes.constData() + at, sizeof atom);
        if (atom != XCB_ATOM_NONE) {
            atoms << atom;
        }
    }
    return atoms;
}

} // namespace

X11SnapshotRead::X11SnapshotRead(const Services &services, const Subject &subject, Answer answer, QObject *parent)
    : QObject(parent)
    , m_services(services)
    , m_subject(subject)
    , m_answer(std::move(answer))
{
    m_transfer = std::make_unique<X11SelectionTransfer>(
        services.connection, services.scheduler,
        X11SelectionTransfer::Request{
            .selection = subject.clipboard, .target = services.connection.atom("TARGETS"), .time = subject.time},
        [this](const X11SelectionTransfer::Result &result) { handleTargets(result); });
}

void X11SnapshotRead::end()
{
    m_transfer.reset();
    QMetaObject::invokeMethod(
        this, [this] { finish(std::nullopt); }, Qt::QueuedConnection);
}

void X11SnapshotRead::handleTargets(const X11SelectionTransfer::Result &result)
{
    // Some old toolkits give the list the type TARGETS, so the type does not matter but the unit does.
    if (result.outcome != ClipboardContent::Outcome::Read || result.unitBits != 32) {
        finish(std::nullopt);
        return;
    }
    m_services.names.resolve(atomsIn(result.bytes), this, [this](Types types) { handleNames(std::move(types)); });
}

void X11SnapshotRead::handleNames(Types types)
{
    m_types = std::move(types);
    for (const X11AtomNames::Named &type : std::as_const(m_types)) {
        if (type.name == clipboardTypes::kPasswordHint) {
            askForHint(type.atom);
            return;
        }
    }
    askForApplication();
}

void X11SnapshotRead::askForHint(xcb_atom_t hint)
{
    m_transfer = std::make_unique<X11SelectionTransfer>(
        m_services.connection, m_services.scheduler,
        X11SelectionTransfer::Request{m_subject.clipboard, hint, m_subject.time, kLongestHint},
        [this](const X11SelectionTransfer::Result &result) {
            // Who offers the hint and cannot say what it is has something to hide.
            m_isConcealed = result.outcome != ClipboardContent::Outcome::Read || clipboardTypes::isSecret(result.bytes);
            askForApplication();
        });
}

void X11SnapshotRead::askForApplication()
{
    m_services.frontmost.whenKnown(m_subject.activation, this, [this](const std::optional<Application> &application) {
        ClipboardSnapshot snapshot;
        snapshot.changeCount = m_subject.changeCount;
        snapshot.frontmost = application;
        QByteArrayList names;
        for (const X11AtomNames::Named &type : std::as_const(m_types)) {
            names << type.name;
            snapshot.types << QString::fromUtf8(type.name);
        }
        if (m_isConcealed) {
            snapshot.types << QString::fromLatin1(clipboardTypes::kConcealedMarker);
        }
        snapshot.formats = clipboardTypes::formatsOf(names);
        finish(std::move(snapshot));
    });
}

void X11SnapshotRead::finish(std::optional<ClipboardSnapshot> snapshot)
{
    if (const Answer answer = std::exchange(m_answer, nullptr)) {
        deleteLater();
        answer(std::move(snapshot), m_types);
    }
}

} // namespace ostrelle
