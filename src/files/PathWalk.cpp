#include "files/PathWalk.h"

#include <QFile>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr int kLinkLimit = 40; // the kernel's, path_resolution(7)

QByteArray parent(const QByteArray &path)
{
    return path.left(std::max<qsizetype>(path.lastIndexOf('/'), 0));
}

} // namespace

PathWalk::PathWalk(const QString &path)
    : m_path(path)
    , m_left(QFile::encodeName(path).split('/'))
{
    dropDots();
}

/// True when there is a name left to ask for.
bool PathWalk::dropDots()
{
    while (!m_left.isEmpty()) {
        const QByteArray &name = m_left.first();
        if (name == "..")
            m_done = parent(m_done);
        else if (!name.isEmpty() && name != ".")
            return true;
        m_left.removeFirst();
    }
    return false;
}

QByteArray PathWalk::nextMount(const Mounts &mounts) const
{
    QByteArray mount = m_left.isEmpty() ? m_done : next();
    while (!mount.isEmpty() && !mounts.contains(mount))
        mount = parent(mount);
    return mount.isEmpty() ? QByteArrayLiteral("/") : mount;
}

std::optional<FileFacts> PathWalk::advance(const QByteArray &mount, const Mounts &mounts, const FileLookUp &lookUp)
{
    while (!m_left.isEmpty()) {
        if (nextMount(mounts) != mount)
            return std::nullopt;
        if (const auto facts = take(lookUp.entry(next())))
            return facts;
    }
    return FileFacts{FileFacts::Kind::Folder, m_isLink};
}

std::optional<FileFacts> PathWalk::take(const FileLookUp::Entry &entry)
{
    using Kind = FileLookUp::Entry::Kind;
    const QByteArray here = next();
    m_left.removeFirst();
    const bool isLast = m_left.isEmpty();
    const auto atEnd = [&](FileFacts::Kind kind) {
        return FileFacts{isLast ? kind : FileFacts::Kind::Missing, m_isLink};
    };
    switch (entry.kind) {
    case Kind::Missing:
        return FileFacts{FileFacts::Kind::Missing, m_isLink};
    case Kind::Unreachable:
        return FileFacts{FileFacts::Kind::Unknown, m_isLink};
    case Kind::Regular:
        return atEnd(FileFacts::Kind::Regular);
    case Kind::Special:
        return atEnd(FileFacts::Kind::Special);
    case Kind::Folder:
        m_done = here;
        break;
    case Kind::Link:
        m_isLink = m_isLink || isLast;
        if (!follow(entry.target))
            return FileFacts{FileFacts::Kind::Missing, m_isLink};
        break;
    }
    dropDots();
    return std::nullopt;
}

/// False when the link leads nowhere.
bool PathWalk::follow(const QByteArray &target)
{
    if (target.isEmpty() || ++m_linkCount > kLinkLimit)
        return false;
    if (target.startsWith('/'))
        m_done.clear();
    m_left = target.split('/') + m_left;
    return true;
}

} // namespace ostrelle
