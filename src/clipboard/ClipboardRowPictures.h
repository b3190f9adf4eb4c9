#pragma once

#include "clipboard/ClipImages.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QObject>
#include <QUuid>

#include <memory>
#include <optional>

namespace ostrelle {

class ClipboardService;

/// The pictures of the rows in sight: read and decoded one after another, off the main thread and outside this
/// process, the latest kept. Tells the service the size of an image that it did not know.
class ClipboardRowPictures : public QObject
{
    Q_OBJECT
public:
    /// Logical side of a tile.
    static constexpr int kSide = 28;
    static constexpr int kKept = 64;

    ClipboardRowPictures(ClipboardService &service, ClipImages &images, QObject *parent = nullptr);

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
    void dropDecoding();
    void decode(const std::optional<QByteArray> &bytes);
    void keep(const QUuid &item, const ClipTile &tile);

    ClipboardService &m_service;
    ClipImages &m_images;
    double m_devicePixelRatio = 1;
    QList<QUuid> m_wanted;
    QUuid m_current; ///< being read or decoded; null when none is
    std::unique_ptr<ClipImages::Request> m_decoding;
    /// The most recently used last.
    QList<Kept> m_kept;
};

} // namespace ostrelle
