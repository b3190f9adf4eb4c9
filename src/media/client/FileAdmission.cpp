#include "media_client/FileAdmission.h"

#include <QFile>
#include <QSocketNotifier>

#include <fcntl.h>
#include <sys/eventfd.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace ostrelle {
namespace {

/// More hanging mounts than that, and files wait until one comes back.
constexpr int kMostThreads = 4;

AdmittedFile refused(MediaFailure failure)
{
    AdmittedFile file;
    file.failure = failure;
    return file;
}

/// Where an open file is, also when links led to it; empty when that cannot be told.
QString placeOf(const FileDescriptor &file)
{
    return QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(file.get()));
}

/// Opening a device or a FIFO can already do something, so it is asked for its kind before, and again when it is open.
AdmittedFile opened(const FileAdmission::Wish &wish, const DesktopThumbnails &cache)
{
    const QByteArray name = QFile::encodeName(wish.path);
    struct stat facts = {};
    if (::fstatat(AT_FDCWD, name.constData(), &facts, wish.followsLinks ? 0 : AT_SYMLINK_NOFOLLOW) != 0)
        return refused(errno == EACCES ? MediaFailure::Unreadable : MediaFailure::NotAFile);
    if (!S_ISREG(facts.st_mode))
        return refused(MediaFailure::NotAFile);
    AdmittedFile file;
    const int ofLinks = wish.followsLinks ? 0 : O_NOFOLLOW;
    file.file.reset(::open(name.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | ofLinks));
    if (!file.file)
        return refused(MediaFailure::Unreadable);
    if (::fstat(file.file.get(), &facts) != 0 || !S_ISREG(facts.st_mode))
        return refused(MediaFailure::NotAFile);
    if (wish.cacheSide == 0)
        return file;
    const QString place = wish.followsLinks ? placeOf(file.file) : wish.path;
    if (place.isEmpty() || cache.contains(place))
        return file;
    file.subject = {fileUri(place), qint64(facts.st_mtim.tv_sec)};
    file.cached = cache.find(file.subject, wish.cacheSide);
    if (!file.cached && cache.hasFailure(file.subject))
        return refused(MediaFailure::FailedBefore);
    return file;
}

/// In memory only: what was copied stays off the disk.
AdmittedFile inMemory(const QByteArray &bytes)
{
    AdmittedFile file;
    file.file.reset(::memfd_create("picture", MFD_CLOEXEC));
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t count = ::write(file.file.get(), bytes.constData() + done, std::size_t(bytes.size() - done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return refused(MediaFailure::Unreadable);
        done += count;
    }
    return file;
}

} // namespace

/// `mutex` guards wishes, answers and threads.
struct FileAdmission::State
{
    explicit State(DesktopThumbnails thumbnails)
        : cache(std::move(thumbnails))
        , wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    {
    }

    void work();

    const DesktopThumbnails cache;
    const FileDescriptor wake;
    std::mutex mutex;
    std::deque<Wish> wishes;
    std::deque<std::pair<quint64, AdmittedFile>> answers;
    int threads = 0;
};

void FileAdmission::State::work()
{
    std::unique_lock lock(mutex);
    while (!wishes.empty()) {
        const Wish wish = std::move(wishes.front());
        wishes.pop_front();
        lock.unlock();
        AdmittedFile file = wish.path.isEmpty() ? inMemory(wish.bytes) : opened(wish, cache);
        lock.lock();
        answers.emplace_back(wish.number, std::move(file));
        ::eventfd_write(wake.get(), 1);
    }
    --threads;
}

FileAdmission::FileAdmission(const DesktopThumbnails &cache, Taker taker)
    : m_state(std::make_shared<State>(cache))
    , m_notifier(std::make_unique<QSocketNotifier>(m_state->wake.get(), QSocketNotifier::Read))
    , m_taker(std::move(taker))
{
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &FileAdmission::deliver);
}

FileAdmission::~FileAdmission()
{
    const std::lock_guard lock(m_state->mutex);
    m_state->wishes.clear();
}

void FileAdmission::admit(const Wish &wish)
{
    const std::lock_guard lock(m_state->mutex);
    m_state->wishes.push_back(wish);
    if (m_state->threads >= kMostThreads)
        return;
    ++m_state->threads;
    std::thread([state = m_state] { state->work(); }).detach();
}

void FileAdmission::deliver()
{
    eventfd_t count = 0;
    ::eventfd_read(m_state->wake.get(), &count);
    for (;;) {
        std::unique_lock lock(m_state->mutex);
        if (m_state->answers.empty())
            return;
        auto [number, file] = std::move(m_state->answers.front());
        m_state->answers.pop_front();
        lock.unlock();
        m_taker(number, std::move(file));
    }
}

} // namespace ostrelle
