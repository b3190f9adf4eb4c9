#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QObject>
#include <QSize>
#include <QUuid>

#include <optional>

namespace ostrelle {

class ClipboardService;

/// An image as a preview tile shows it, and what its header says.
struct RowPicture
{
    QImage tile;     ///< square; null when the image does not decode or is larger than kPixelLimit
    QSize pixelSize; ///< of the image; empty when it does not decode
};

/// More than any screenshot, little enough to hold in memory decoded.
inline constexpr qint64 kRowPicturePixelLimit = 100'000'000;

/// Decodes a PNG or TIFF image to a tile of `side` device pixels, filled and cropped to the middle. Any thread.
RowPicture decodedRowPicture(const QByteArray &bytes, int side);

/// The pictures of the rows in sight: read and decoded one after another off the main thread, the latest kept. Tells
/// the service the size of an image that it did not know.
class ClipboardRowPictures : public QObject
{
    Q_OBJECT
public:
    /// Logical side of a tile.
    static constexpr int kSide = 28;
    static constexpr int kKept = 64;

    explicit ClipboardRowPictures(ClipboardService &service, QObject *parent = nullptr);

    /// The items whose pictures are in sight. What nobody wants any more is not decoded.
    void want(const QList<QUuid> &items, double devicePixelRatio);
    /// The picture; null while it is not there, and for good when it does not decode.
    QImage tile(const QUuid &item) const;

Q_SIGNALS:
    void arrived(const QUuid &item);

private:
    struct Kept
    {
        QUuid item;
        QImage tile;
    };

    void readNext();
    void decode(const QUuid &item, const std::optional<QByteArray> &bytes);
    void keep(const QUuid &item, const RowPicture &picture, double devicePixelRatio);

    ClipboardService &m_service;
    double m_devicePixelRatio = 1;
    QList<QUuid> m_wanted;
    bool m_isReading = false;
    /// The most recently used last.
    QList<Kept> m_kept;
};

} // namespace ostrelle
