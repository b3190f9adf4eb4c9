#pragma once

#include "clipboard/ClipImages.h"
#include "platform/ClipboardPort.h"
#include "records/ClipItem.h"

#include <QList>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace ostrelle {

class SettingsStore;

/// A copy as it was read: a new record and, for an image, its bytes.
struct CapturedClip
{
    ClipItem item;
    QByteArray image;
};

/// Turns one announced change of the clipboard into a record, or into nothing when the privacy rules, its content or a
/// newer copy say so. Reads what the owner offers in the order files, PNG, TIFF, text; where these yield nothing, a
/// JPEG, BMP or WebP image, which becomes a PNG, or a line in the log. Destroying it ends the reading.
class ClipboardCapture : public QObject
{
    Q_OBJECT
public:
    /// `finished` is called once, perhaps from inside start(), and may destroy the capture.
    ClipboardCapture(ClipboardPort &port, const SettingsStore &settings, ClipImages &images, qint64 changeCount,
                     std::function<void()> finished);

    void start();
    bool isFinished() const { return m_isFinished; }
    std::optional<CapturedClip> takeResult() { return std::move(m_result); }

private:
    void consider(const std::optional<ClipboardSnapshot> &snapshot);
    void readNext();
    void take(ClipboardFormat format, const ClipboardContent &content);
    bool accept(ClipboardFormat format, const ClipboardContent &content);
    bool acceptFiles(const QStringList &paths);
    bool acceptImage(const QByteArray &bytes, const QString &type);
    bool acceptText(const QString &text);
    void convert(const QByteArray &image);
    void takeConverted(const std::optional<QByteArray> &png);
    void endIfReplaced();
    void passOver(const char *reason);
    void succeed();
    void finish();

    ClipboardPort &m_port;
    const SettingsStore &m_settings;
    ClipImages &m_images;
    qint64 m_changeCount;
    std::function<void()> m_finished;
    QList<ClipboardFormat> m_formats; ///< still to be tried
    bool m_offersForeignImage = false;
    std::unique_ptr<ClipImages::Request> m_conversion;
    CapturedClip m_clip;
    std::optional<CapturedClip> m_result;
    bool m_isFinished = false;
};

} // namespace ostrelle
