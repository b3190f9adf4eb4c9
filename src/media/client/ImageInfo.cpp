#include "media_client/ImageInfo.h"

#include "media_client/FactAnswers.h"

#include <QFileInfo>

#include <limits>

namespace ostrelle {
namespace {

constexpr qsizetype kLongestFormat = 16;
constexpr qsizetype kLongestColorSpace = 256;
/// Whole as a double.
constexpr double kLargestFile = 9007199254740992;

/// One line that can be shown, whatever a profile's author wrote.
std::optional<QString> lineIn(const QJsonObject &object, QStringView key, qsizetype longest)
{
    const QString line = object[key].toString().simplified().left(longest);
    return line.isEmpty() ? std::nullopt : std::optional(line);
}

} // namespace

std::optional<ImageInfo> imageInfoFromJson(const QByteArray &json, const QString &path)
{
    const std::optional<QJsonObject> object = answerObject(json);
    if (!object)
        return std::nullopt;
    constexpr int kMost = std::numeric_limits<int>::max();
    const QFileInfo file(path);
    const std::optional<int> width = wholeNumberIn(*object, u"pixelWidth", 1, kMost);
    const std::optional<int> height = wholeNumberIn(*object, u"pixelHeight", 1, kMost);
    if (!width || !height)
        return std::nullopt;
    ImageInfo info;
    info.name = file.fileName();
    info.pixelWidth = *width;
    info.pixelHeight = *height;
    info.format = lineIn(*object, u"format", kLongestFormat).value_or(file.suffix().toUpper());
    info.byteSize = static_cast<qint64>(numberIn(*object, u"byteSize", 0, kLargestFile).value_or(0));
    info.colorSpace = lineIn(*object, u"colorSpace", kLongestColorSpace);
    info.bitDepth = wholeNumberIn(*object, u"bitDepth", 1, 1024);
    info.dpi = wholeNumberIn(*object, u"dpi", 0, kMost);
    info.hasAlpha = object->value(u"hasAlpha").toBool();
    return info;
}

} // namespace ostrelle
