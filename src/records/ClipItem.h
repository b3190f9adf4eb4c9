#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QUrl>
#include <QUuid>

#include <optional>

namespace ostrelle {

/// What is kept in memory of a copied image: its bytes stay in the store.
struct ClipImage
{
    QString type;        ///< "public.png" or "public.tiff"; empty when the store names none
    qint64 byteSize = 0; ///< of the raw image bytes
    /// Pixel size once somebody decoded the header; empty before, and when it does not decode.
    QSize pixelSize;

    friend bool operator==(const ClipImage &, const ClipImage &) = default;
};

/// One entry of the clipboard history.
struct ClipItem
{
    enum class Kind { Text, Link, Image, Files };

    QUuid id;
    Kind kind = Kind::Text;
    std::optional<QString> text;      ///< Text, Link: exactly as copied
    std::optional<QStringList> paths; ///< Files: absolute, in the order copied
    std::optional<ClipImage> image;   ///< Image
    double date = 0;                  ///< seconds since 2001-01-01 00:00:00 UTC
    bool pinned = false;
    std::optional<QString> appName;

    friend bool operator==(const ClipItem &, const ClipItem &) = default;
};

QString rawValue(ClipItem::Kind kind);
std::optional<ClipItem::Kind> clipKindFromRawValue(QStringView raw);

/// `paths` as file URLs.
QList<QUrl> urls(const ClipItem &item);
/// The one-line label.
QString title(const ClipItem &item);
/// The label cut to what a row can show: its cost does not grow with the text.
QString displayTitle(const ClipItem &item);
/// The secondary label. For a long text worth keeping: it counts the user-perceived characters of the whole text.
QString detail(const ClipItem &item);
/// Text or Link for a copied string; nothing when it is blank.
std::optional<ClipItem::Kind> kindOfText(const QString &text);

} // namespace ostrelle
