#include "support/FakeClipboardPort.h"

#include "foundation/TaskScheduler.h"

#include <utility>

namespace ostrelle {
namespace {

using Outcome = ClipboardContent::Outcome;

ClipboardContent bytesContent(const std::optional<QByteArray> &bytes)
{
    ClipboardContent content;
    if (!bytes)
        return content;
    content.outcome = bytes->size() > ClipboardPort::kReadCap ? Outcome::TooLarge : Outcome::Read;
    if (content.outcome == Outcome::Read)
        content.bytes = *bytes;
    return content;
}

} // namespace

FakeClipboardPort::FakeClipboardPort(TaskScheduler &scheduler)
    : m_scheduler(scheduler)
{
}

FakeClipboardPort::~FakeClipboardPort() = default;

void FakeClipboardPort::copy(Owner owner)
{
    m_owner = std::move(owner);
    m_offer.reset();
    m_frontmostAtChange = frontmost;
    ++m_changeCount;
    Q_EMIT changed();
}

void FakeClipboardPort::copyText(const QString &text)
{
    Owner owner;
    owner.text = text;
    copy(std::move(owner));
}

void FakeClipboardPort::copyPng(const QByteArray &bytes)
{
    Owner owner;
    owner.png = bytes;
    copy(std::move(owner));
}

void FakeClipboardPort::snapshot(QObject *context, std::function<void(std::optional<ClipboardSnapshot>)> answer)
{
    ++m_snapshotCount;
    std::optional<ClipboardSnapshot> snapshot;
    if (const QList<ClipboardFormat> offered = formats(); !offered.isEmpty() || !m_owner.types.isEmpty())
        snapshot = ClipboardSnapshot{m_changeCount, m_owner.types, offered, m_frontmostAtChange};
    later(std::chrono::nanoseconds(0), context, [snapshot, answer = std::move(answer)] { answer(snapshot); });
}

void FakeClipboardPort::read(qint64 changeCount, ClipboardFormat format, QObject *context,
                             std::function<void(ClipboardContent)> answer)
{
    ++m_readCount;
    const bool hangs = m_owner.hangs;
    later(hangs ? std::chrono::nanoseconds(kDeadline) : m_owner.readDelay, context,
          [this, hangs, changeCount, format, answer = std::move(answer)] {
              ClipboardContent answered;
              if (changeCount != m_changeCount)
                  answered.outcome = Outcome::Gone;
              else if (hangs)
                  answered.outcome = Outcome::TimedOut;
              else
                  answered = content(format);
              answer(answered);
          });
}

qint64 FakeClipboardPort::write(const ClipboardOffer &offer)
{
    m_offer = offer;
    m_owner = {};
    if (const auto *text = std::get_if<QString>(&offer))
        m_owner.text = *text;
    else if (const auto *files = std::get_if<ClipboardFiles>(&offer))
        m_owner.files = files->paths;
    else if (const auto *image = std::get_if<ClipboardImage>(&offer))
        (image->format == ClipboardFormat::Png ? m_owner.png : m_owner.tiff) = image->bytes;
    m_frontmostAtChange = frontmost;
    ++m_changeCount;
    Q_EMIT changed();
    return m_changeCount;
}

void FakeClipboardPort::later(std::chrono::nanoseconds delay, QObject *context, std::function<void()> call)
{
    std::erase_if(m_tasks, [](const Task &task) { return !task.isPending(); });
    m_tasks.push_back(m_scheduler.after(delay, context, std::move(call)));
}

QList<ClipboardFormat> FakeClipboardPort::formats() const
{
    QList<ClipboardFormat> result;
    if (m_owner.webp)
        result.append(ClipboardFormat::WebP);
    if (m_owner.bmp)
        result.append(ClipboardFormat::Bmp);
    if (m_owner.jpeg)
        result.append(ClipboardFormat::Jpeg);
    if (m_owner.text)
        result.append(ClipboardFormat::Text);
    if (m_owner.tiff)
        result.append(ClipboardFormat::Tiff);
    if (m_owner.png)
        result.append(ClipboardFormat::Png);
    if (m_owner.files)
        result.append(ClipboardFormat::Files);
    return result;
}

ClipboardContent FakeClipboardPort::content(ClipboardFormat format) const
{
    ClipboardContent content;
    switch (format) {
    case ClipboardFormat::Png:
        return bytesContent(m_owner.png);
    case ClipboardFormat::Tiff:
        return bytesContent(m_owner.tiff);
    case ClipboardFormat::Jpeg:
        return bytesContent(m_owner.jpeg);
    case ClipboardFormat::Bmp:
        return bytesContent(m_owner.bmp);
    case ClipboardFormat::WebP:
        return bytesContent(m_owner.webp);
    case ClipboardFormat::Files:
        content.outcome = m_owner.files ? Outcome::Read : Outcome::Absent;
        content.paths = m_owner.files.value_or(QStringList());
        return content;
    case ClipboardFormat::Text:
        content.outcome = m_owner.text ? Outcome::Read : Outcome::Absent;
        content.text = m_owner.text.value_or(QString());
        return content;
    }
    Q_UNREACHABLE();
}

} // namespace ostrelle
