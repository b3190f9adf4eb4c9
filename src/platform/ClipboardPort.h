#pragma once

#include "platform/Frontmost.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <variant>

namespace ostrelle {

enum class ClipboardFormat { Files, Png, Tiff, Text, Jpeg, Bmp, WebP };

/// What is on the clipboard, before any content was read.
struct ClipboardSnapshot
{
    qint64 changeCount = 0;
    /// The owner's type names as they are, markers of concealed content included; the platform's own marker for it
    /// appears as "org.nspasteboard.ConcealedType".
    QStringList types;
    QList<ClipboardFormat> formats;       ///< what read() can be asked for
    std::optional<Application> frontmost; ///< as known when the change was announced
};

/// The answer to a read.
struct ClipboardContent
{
    enum class Outcome { Read, Absent, TooLarge, TimedOut, Gone };

    Outcome outcome = Outcome::Absent;
    QByteArray bytes;  ///< the image formats
    QString text;      ///< Text
    QStringList paths; ///< Files: absolute local paths, in order; remote and malformed ones left out

    /// An answer that has nothing to give.
    static ClipboardContent without(Outcome outcome) { return {outcome, {}, {}, {}}; }
};

/// What the program puts on the clipboard.
struct ClipboardImage
{
    QByteArray bytes;
    ClipboardFormat format = ClipboardFormat::Png; ///< Png or Tiff
};
struct ClipboardFiles
{
    QStringList paths;
};
using ClipboardOffer = std::variant<std::monostate, QString, ClipboardImage, ClipboardFiles>; ///< monostate: empty

/// The system clipboard. Other programs' content is read asynchronously, with a deadline and a cap of kReadCap bytes;
/// no call blocks for another program. Answers come on the main thread and not at all when `context` is gone.
class ClipboardPort : public QObject
{
    Q_OBJECT
public:
    static constexpr qint64 kReadCap = 16 * 1024 * 1024;

    using QObject::QObject;

    /// Moves with every new owner, also by this program's own writes (once each, at the moment of writing).
    virtual qint64 changeCount() const = 0;
    /// Asks what the clipboard holds; nothing when it is empty or its owner does not answer. The owner was asked as of
    /// `changeCount` in the answer.
    virtual void snapshot(QObject *context, std::function<void(std::optional<ClipboardSnapshot>)> answer) = 0;
    /// Reads one format of the content announced as `changeCount`; Gone when something else was copied meanwhile.
    virtual void read(qint64 changeCount, ClipboardFormat format, QObject *context,
                      std::function<void(ClipboardContent)> answer) = 0;
    /// Replaces the content; returns the change count that this consumed.
    virtual qint64 write(const ClipboardOffer &offer) = 0;
    /// Before the program ends: content that it owns goes to the clipboard manager or, where there is none, to a small
    /// process that keeps it until something else is copied. Bounded to about a second.
    virtual void handOver() = 0;

Q_SIGNALS:
    /// The change count has moved; from within write(), too.
    void changed();
};

} // namespace ostrelle
