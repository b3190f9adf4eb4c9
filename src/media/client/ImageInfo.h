#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace ostrelle {

/// What is known of an image file.
struct ImageInfo
{
    QString name;                      ///< last path component
    int pixelWidth = 0;                ///< as stored, not turned upright; at least 1
    int pixelHeight = 0;               ///< at least 1
    QString format;                    ///< what the content is, as "JPEG"; else the ending of the name in upper case
    qint64 byteSize = 0;               ///< 0 when unknown
    std::optional<QString> colorSpace; ///< the embedded profile's name, else the color model
    std::optional<int> bitDepth;       ///< bits per sample
    std::optional<int> dpi;            ///< horizontal
    bool hasAlpha = false;             ///< false when unknown

    friend bool operator==(const ImageInfo &, const ImageInfo &) = default;
};

/// What a helper answers of the file at `path`: an object with "pixelWidth", "pixelHeight", "byteSize" and, as far as
/// they are known, "format", "colorSpace", "bitDepth", "dpi" and "hasAlpha". Nothing when it is none, without positive
/// dimensions, or with a figure that cannot be.
std::optional<ImageInfo> imageInfoFromJson(const QByteArray &json, const QString &path);

} // namespace ostrelle
