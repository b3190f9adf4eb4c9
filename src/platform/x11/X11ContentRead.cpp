#include "platform/x11/X11ContentRead.h"

#include "platform/freedesktop/PortalFileTransfer.h"

#include <utility>

namespace ostrelle {

using clipboardTypes::Encoding;
using Outcome = ClipboardContent::Outcome;

X11ContentRead::X11ContentRead(const Services &services, const Subject &subject,
                               std::function<void(ClipboardContent)> answer, QObject *parent)
    : QObject(parent)
    , m_services(services)
    , m_subject(subject)
    , m_answer(std::move(answer))
{
    QMetaObject::invokeMethod(
        this, [this] { askForNext(); }, Qt::QueuedConnection);
}

void X11ContentRead::end()
{
    m_transfer.reset();
    QMetaObject::invokeMethod(
        this, [this] { finish(ClipboardContent::without(Outcome::Gone)); }, Qt::QueuedConnection);
}

void X11ContentRead::askForNext()
{
    if (!m_answer) {
        return;
    }
    if (m_subject.targets.isEmpty()) {
        finish(ClipboardContent::without(Outcome::Absent));
        return;
    }
    const Target target = m_subject.targets.takeFirst();
    m_transfer = std::make_unique<X11SelectionTransfer>(
        m_services.connection, m_services.scheduler,
        X11SelectionTransfer::Request{.selection = m_subject.clipboard, .target = target.atom, .time = m_subject.time},
        [this, encoding = target.encoding](X11SelectionTransfer::Result result) {
            handle(std::move(result), encoding);
        });
}

void X11ContentRead::handle(X11SelectionTransfer::Result result, Encoding encoding)
{
    if (result.outcome != Outcome::Read && result.outcome != Outcome::Absent) {
        finish(ClipboardContent::without(result.outcome));
        return;
    }
    if (result.outcome == Outcome::Absent || result.unitBits != 8 || result.bytes.isEmpty()) {
        askForNext();
        return;
    }
    ClipboardContent content = ClipboardContent::without(Outcome::Read);
    switch (encoding) {
    case Encoding::Raw:
        content.bytes = std::move(result.bytes);
        finish(std::move(content));
        return;
    case Encoding::UriList:
    case Encoding::CopiedFiles:
    case Encoding::MozillaUrl:
        takeFiles(clipboardTypes::decodeFiles(result.bytes, encoding));
        return;
    case Encoding::FileTransferKey:
        m_services.fileTransfer.retrieve(clipboardTypes::decodeText(result.bytes, Encoding::Utf8), this,
                                         [this](const QStringList &paths) { takeFiles(paths); });
        return;
    case Encoding::Utf8:
    case Encoding::UnknownText:
    case Encoding::Latin1:
        content.text = clipboardTypes::decodeText(result.bytes, encoding);
        finish(std::move(content));
        return;
    }
}

void X11ContentRead::takeFiles(const QStringList &paths)
{
    if (paths.isEmpty()) {
        askForNext();
        return;
    }
    ClipboardContent content = ClipboardContent::without(Outcome::Read);
    content.paths = paths;
    finish(std::move(content));
}

void X11ContentRead::finish(ClipboardContent content)
{
    if (const auto answer = std::exchange(m_answer, nullptr)) {
        deleteLater();
        answer(std::move(content));
    }
}

} // namespace ostrelle
