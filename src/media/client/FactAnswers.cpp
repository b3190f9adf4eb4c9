#include "media_client/FactAnswers.h"

#include <QJsonDocument>

#include <cmath>

namespace ostrelle {
namespace {

constexpr qsizetype kLongestAnswer = 16 * 1024;

} // namespace

std::optional<QJsonObject> answerObject(const QByteArray &json)
{
    if (json.size() > kLongestAnswer)
        return std::nullopt;
    const QJsonDocument document = QJsonDocument::fromJson(json);
    return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

std::optional<double> numberIn(const QJsonObject &object, QStringView key, double least, double most)
{
    const QJsonValue value = object[key];
    const double number = value.toDouble();
    return value.isDouble() && number >= least && number <= most ? std::optional(number) : std::nullopt;
}

std::optional<int> wholeNumberIn(const QJsonObject &object, QStringView key, int least, int most)
{
    const std::optional<double> number = numberIn(object, key, least, most);
    return number && *number == std::floor(*number) ? std::optional(static_cast<int>(*number)) : std::nullopt;
}

} // namespace ostrelle
