#include "clipboard/ClipboardCapture.h"

#include "clipboard/PrivacyRules.h"
#include "core/SettingsStore.h"
#include "records/RecordText.h"

#include <QDateTime>
#include <QLoggingCategory>

#include <algorithm>
#include <utility>

namespace ostrelle {
namespace {

Q_LOGGING_CATEGORY(lcClipboard, "ostrelle.clipboard", QtWarningMsg)

/// An image that the history does not hold as it is.
bool isForeignImage(ClipboardFormat format)
{
    return format == ClipboardFormat::Jpeg || format == ClipboardFormat::Bmp || format == ClipboardFormat::WebP;
}

} // namespace

ClipboardCapture::ClipboardCapture(ClipboardPort &port, const SettingsStore &settings, ClipImages &images,
                                   qint64 changeCount, std::function<void()> finished)
    : m_port(port)
    , m_settings(settings)
    , m_images(images)
    , m_changeCount(changeCount)
    , m_finished(std::move(finished))
{
}

void ClipboardCapture::start()
{
    m_clip.item.date = referenceDate(QDateTime::currentMSecsSinceEpoch());
    m_port.snapshot(this, [this](const std::optional<ClipboardSnapshot> &snapshot) { consider(snapshot); });
}

void ClipboardCapture::consider(const std::optional<ClipboardSnapshot> &snapshot)
{
    // Of a newer change there is going to be a capture of its own.
    const bool isOurs = snapshot && snapshot->changeCount == m_changeCount;
    if (!isOurs || (m_settings.ignoreConcealed() && isConcealed(snapshot->types)) ||
        isExcluded(snapshot->frontmost, m_settings.excludedApps())) {
        finish();
        return;
    }
    if (snapshot->frontmost && !snapshot->frontmost->name.isEmpty())
        m_clip.item.appName = snapshot->frontmost->name;
    for (const ClipboardFormat format :
         {ClipboardFormat::Files, ClipboardFormat::Png, ClipboardFormat::Tiff, ClipboardFormat::Text,
          ClipboardFormat::Jpeg, ClipboardFormat::Bmp, ClipboardFormat::WebP}) {
        if (snapshot->formats.contains(format))
            m_formats.append(format);
    }
    m_offersForeignImage = std::any_of(m_formats.begin(), m_formats.end(), isForeignImage);
    readNext();
}

void ClipboardCapture::readNext()
{
    if (m_formats.isEmpty()) {
        if (m_offersForeignImage)
            passOver("it cannot be read, is broken or is too large");
        else
            finish();
        return;
    }
    const ClipboardFormat format = m_formats.takeFirst();
    m_port.read(m_changeCount, format, this,
                [this, format](const ClipboardContent &content) { take(format, content); });
}

void ClipboardCapture::take(ClipboardFormat format, const ClipboardContent &content)
{
    using Outcome = ClipboardContent::Outcome;
    if (content.outcome == Outcome::Read && isForeignImage(format) && !content.bytes.isEmpty()) {
        convert(content.bytes);
    } else if (content.outcome == Outcome::Read && accept(format, content)) {
        succeed();
    } else if (content.outcome == Outcome::Gone) {
        finish();
    } else {
        readNext();
    }
}

bool ClipboardCapture::accept(ClipboardFormat format, const ClipboardContent &content)
{
    switch (format) {
    case ClipboardFormat::Files:
        return acceptFiles(content.paths);
    case ClipboardFormat::Png:
        return acceptImage(content.bytes, QStringLiteral("public.png"));
    case ClipboardFormat::Tiff:
        return acceptImage(content.bytes, QStringLiteral("public.tiff"));
    case ClipboardFormat::Text:
        return acceptText(content.text);
    default:
        return false;
    }
}

bool ClipboardCapture::acceptFiles(const QStringList &paths)
{
    if (paths.isEmpty())
        return false;
    m_clip.item.kind = ClipItem::Kind::Files;
    m_clip.item.paths = paths;
    return true;
}

bool ClipboardCapture::acceptImage(const QByteArray &bytes, const QString &type)
{
    if (bytes.isEmpty() || bytes.size() > ClipboardPort::kReadCap)
        return false;
    m_clip.item.kind = ClipItem::Kind::Image;
    m_clip.item.image = ClipImage{type, bytes.size(), QSize()};
    m_clip.image = bytes;
    return true;
}

bool ClipboardCapture::acceptText(const QString &text)
{
    const std::optional<ClipItem::Kind> kind = kindOfText(text);
    if (!kind)
        return false;
    m_clip.item.kind = *kind;
    m_clip.item.text = text;
    return true;
}

void ClipboardCapture::convert(const QByteArray &image)
{
    // Queued, because the change may come from a write in the middle of something.
    connect(&m_port, &ClipboardPort::changed, this, &ClipboardCapture::endIfReplaced,
            Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection));
    m_conversion = m_images.toPng(image, [this](const std::optional<QByteArray> &png) { takeConverted(png); });
}

void ClipboardCapture::takeConverted(const std::optional<QByteArray> &png)
{
    m_conversion.reset();
    if (png && acceptImage(*png, QStringLiteral("public.png")))
        succeed();
    else
        readNext();
}

/// A conversion may take seconds, in which a newer copy shall not have to wait.
void ClipboardCapture::endIfReplaced()
{
    if (m_conversion && m_port.changeCount() != m_changeCount)
        passOver("something else was copied before it was converted");
}

void ClipboardCapture::passOver(const char *reason)
{
    qCWarning(lcClipboard, "A copied image is not recorded: %s", reason);
    finish();
}

void ClipboardCapture::succeed()
{
    m_clip.item.id = QUuid::createUuid();
    m_result = std::move(m_clip);
    finish();
}

void ClipboardCapture::finish()
{
    m_isFinished = true;
    m_conversion.reset();
    // The last thing that happens here: the callee may destroy this object, and with it the member.
    const std::function<void()> finished = std::move(m_finished);
    finished();
}

} // namespace ostrelle
