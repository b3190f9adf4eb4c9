#include "command/NameSource.h"

#include "command/FileName.h"

#include <QSocketNotifier>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace ostrelle {
namespace {

const QByteArray kStandardInput = QByteArrayLiteral("-");
/// Longer than any path that the system takes.
constexpr qsizetype kLongestName = 64 * 1024;
/// Read ahead of the work; an endless pipe is no reason to fill the memory.
constexpr std::size_t kNamesAhead = 1000;

enum class Links { Follow, Leave };

/// Of what is at the path; 0 when there is nothing.
mode_t fileMode(const QByteArray &path, Links links)
{
    struct stat facts = {};
    const int flags = links == Links::Follow ? 0 : AT_SYMLINK_NOFOLLOW;
    return ::fstatat(AT_FDCWD, path.constData(), &facts, flags) == 0 ? facts.st_mode : 0;
}

/// False when not all of them can be had.
bool readFolder(const QByteArray &folder, std::deque<QByteArray> &names)
{
    DIR *const directory = ::opendir(folder.constData());
    if (!directory)
        return false;
    const QByteArray prefix = folder.endsWith('/') ? folder : folder + '/';
    errno = 0;
    while (const dirent *entry = ::readdir(directory)) {
        const QByteArray name(entry->d_name);
        if (name != "." && name != "..")
            names.push_back(prefix + name);
    }
    const bool isWhole = errno == 0;
    ::closedir(directory);
    std::sort(names.begin(), names.end());
    return isWhole;
}

} // namespace

NameSource::NameSource(const QStringList &words, Options options)
    : m_options(std::move(options))
{
    for (const QString &word : words)
        m_words.push_back(bytesOfWord(word));
}

NameSource::~NameSource() = default;

NameSource::State NameSource::state()
{
    while (!m_next) {
        if (!advance())
            return m_readsInput ? State::Waiting : State::Ended;
    }
    return State::Ready;
}

NameSource::Entry NameSource::next()
{
    return *std::exchange(m_next, std::nullopt);
}

/// One step towards the next name; false when there is none for now.
bool NameSource::advance()
{
    if (!m_folders.empty()) {
        if (m_folders.back().empty()) {
            m_folders.pop_back();
            return true;
        }
        const QByteArray path = std::move(m_folders.back().front());
        m_folders.back().pop_front();
        if (S_ISDIR(fileMode(path, Links::Leave)))
            enterFolder(path);
        else if (m_options.isWanted(path) && S_ISREG(fileMode(path, Links::Follow)))
            m_next = {path, {}};
        return true;
    }
    QByteArray word;
    if (!m_inputNames.empty()) {
        word = std::move(m_inputNames.front());
        m_inputNames.pop_front();
        if (m_readable && m_inputNames.size() < kNamesAhead)
            m_readable->setEnabled(true);
    } else if (std::exchange(m_isInputBroken, false)) {
        m_next = {kStandardInput, QStringLiteral("stands for standard input, which cannot be read")};
        return true;
    } else if (m_readsInput || m_words.empty()) {
        return false;
    } else {
        word = std::move(m_words.front());
        m_words.pop_front();
        if (word == kStandardInput) {
            readInput();
            return true;
        }
    }
    if (m_options.isRecursive && S_ISDIR(fileMode(word, Links::Follow)))
        enterFolder(word);
    else
        m_next = {word, {}};
    return true;
}

void NameSource::enterFolder(const QByteArray &folder)
{
    std::deque<QByteArray> names;
    if (!readFolder(folder, names))
        m_next = {folder, QStringLiteral("is a folder that cannot be read")};
    m_folders.push_back(std::move(names));
}

void NameSource::readInput()
{
    m_readsInput = true;
    m_readable = std::make_unique<QSocketNotifier>(STDIN_FILENO, QSocketNotifier::Read);
    connect(m_readable.get(), &QSocketNotifier::activated, this, [this] {
        std::array<char, 64 * 1024> buffer{};
        const ssize_t size = ::read(STDIN_FILENO, buffer.data(), buffer.size());
        if (size < 0 && (errno == EINTR || errno == EAGAIN))
            return;
        m_isInputBroken = size < 0;
        if (size > 0)
            takeInput(buffer.data(), size);
        else
            endInput();
        Q_EMIT moreArrived();
    });
}

void NameSource::takeInput(const char *bytes, qsizetype size)
{
    m_input.append(bytes, size);
    qsizetype begin = 0;
    for (qsizetype end = m_input.indexOf(m_options.separator); end >= 0;
         end = m_input.indexOf(m_options.separator, begin)) {
        if (end > begin)
            m_inputNames.push_back(m_input.mid(begin, end - begin));
        begin = end + 1;
    }
    m_input.remove(0, begin);
    if (m_input.size() > kLongestName)
        m_inputNames.push_back(std::exchange(m_input, {}));
    if (m_inputNames.size() >= kNamesAhead)
        m_readable->setEnabled(false);
}

void NameSource::endInput()
{
    if (!m_input.isEmpty())
        m_inputNames.push_back(std::exchange(m_input, {}));
    m_readsInput = false;
    // The notifier is the caller.
    m_readable.release()->deleteLater();
}

} // namespace ostrelle
