#include "records/ColorFormat.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace ostrelle {

std::optional<ColorFormat> colorFormatFromName(const QString &name)
{
    if (name == u"hex")
        return ColorFormat::Hex;
    if (name == u"rgb")
        return ColorFormat::Rgb;
    if (name == u"hsl")
        return ColorFormat::Hsl;
    if (name == u"json")
        return ColorFormat::Json;
    return std::nullopt;
}

QString colorText(const SampledColor &color, ColorFormat format)
{
    switch (format) {
    case ColorFormat::Rgb:
        return color.rgbString();
    case ColorFormat::Hsl:
        return color.hslString();
    case ColorFormat::Json: {
        QJsonObject record = toJson(color);
        record[QStringLiteral("hex")] = color.hexString();
        return QString::fromUtf8(QJsonDocument(record).toJson(QJsonDocument::Compact));
    }
    default:
        return color.hexString();
    }
}

} // namespace ostrelle
