#include "records/RecordText.h"

namespace ostrelle {
namespace {

constexpr qsizetype kUuidLength = 36;
constexpr qint64 kReferenceDateMsecs = 978307200000; // 2001-01-01 00:00:00 UTC

} // namespace

QByteArray uuidText(const QUuid &id)
{
    return id.toByteArray(QUuid::WithoutBraces).toUpper();
}

std::optional<QUuid> uuidFromText(QByteArrayView text)
{
    if (text.size() != kUuidLength)
        return std::nullopt;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isHyphen = i == 8 || i == 13 || i == 18 || i == 23;
        const char c = text[i];
        const bool isDigit = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
        if (isHyphen ? c != '-' : !isDigit)
            return std::nullopt;
    }
    return QUuid::fromString(QLatin1StringView(text.data(), text.size()));
}

double referenceDate(qint64 msecsSinceEpoch)
{
    return static_cast<double>(msecsSinceEpoch - kReferenceDateMsecs) / 1000.0;
}

} // namespace ostrelle
