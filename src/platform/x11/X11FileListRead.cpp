#include "platform/x11/X11FileListRead.h"

#include "platform/FileDrags.h"
#include "platform/freedesktop/PortalFileTransfer.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QPointer>
#include <QThreadPool>

#include <utility>

Q_LOGGING_CATEGORY(lcFileListRead, "ostrelle.platform", QtInfoMsg)

namespace ostrelle {

using clipboardTypes::Encoding;

namespace {

constexpr qint64 kByteLimit = 4 * 1024 * 1024;
/// Decoding more than this would be felt on the main thread.
constexpr qsizetype kDecodeHere = 64 * 1024;

} // namespace

X11FileListRead::X11FileListRead(const X11ContentRead::Services &services, QList<X11ContentRead::Target> targets,
                                 xcb_timestamp_t time, Answer answer)
    : m_services(services)
    , m_targets(std::move(targets))
    , m_time(time)
    , m_answer(std::move(answer))
{
    Q_ASSERT(!m_targets.isEmpty());
    askForNext();
}

void X11FileListRead::askForNext()
{
    if (m_targets.isEmpty()) {
        const Answer answer = std::move(m_answer);
        answer(m_isRefused ? Outcome::Refused : Outcome::Nothing, {});
        return;
    }
    const X11ContentRead::Target target = m_targets.takeFirst();
    m_isCut = false;
    m_transfer = std::make_unique<X11SelectionTransfer>(
        m_services.connection, m_services.scheduler,
        X11SelectionTransfer::Request{.selection = m_services.connection.atom("XdndSelection"),
                                      .target = target.atom,
                                      .time = m_time,
                                      .cap = kByteLimit,
                                      .overflow = X11SelectionTransfer::Overflow::Cut},
        [this, encoding = target.encoding](X11SelectionTransfer::Result result) {
            handle(std::move(result), encoding);
        });
}

void X11FileListRead::handle(X11SelectionTransfer::Result result, Encoding encoding)
{
    if (result.outcome == ClipboardContent::Outcome::Absent) {
        m_isRefused = true;
    }
    if (result.outcome != ClipboardContent::Outcome::Read || result.unitBits != 8 || result.bytes.isEmpty()) {
        askForNext();
        return;
    }
    m_isCut = result.isCut;
    if (encoding == Encoding::FileTransferKey) {
        m_services.fileTransfer.retrieve(clipboardTypes::decodeText(result.bytes, Encoding::Utf8), this,
                                         [this](const QStringList &paths) { take(paths); });
        return;
    }
    if (result.isCut) {
        result.bytes.truncate(result.bytes.lastIndexOf('\n') + 1); // the last line may lack its end
    }
    decode(result.bytes, encoding);
}

void X11FileListRead::decode(const QByteArray &bytes, Encoding encoding)
{
    // One more than is wanted tells that there are more.
    if (bytes.size() <= kDecodeHere) {
        take(clipboardTypes::decodeFiles(bytes, encoding, FileDrags::kFileLimit + 1));
        return;
    }
    QThreadPool::globalInstance()->start([bytes, encoding, guard = QPointer<X11FileListRead>(this)] {
        const QStringList paths = clipboardTypes::decodeFiles(bytes, encoding, FileDrags::kFileLimit + 1);
        // The guard is looked at on the main thread only; the application object outlives the pool's work.
        QMetaObject::invokeMethod(
            qApp,
            [paths, guard] {
                if (guard) {
                    guard->take(paths);
                }
            },
            Qt::QueuedConnection);
    });
}

void X11FileListRead::take(QStringList paths)
{
    if (paths.isEmpty()) {
        askForNext();
        return;
    }
    if (m_isCut || paths.size() > FileDrags::kFileLimit) {
        paths.resize(std::min<qsizetype>(paths.size(), FileDrags::kFileLimit));
        qCWarning(lcFileListRead, "A drag has more files than are taken: only its first %d are.",
                  static_cast<int>(paths.size()));
    }
    const Answer answer = std::move(m_answer);
    answer(Outcome::Read, paths);
}

} // namespace ostrelle
