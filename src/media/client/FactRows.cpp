#include "media_client/FactRows.h"

#include "media_client/ByteCount.h"

namespace ostrelle {

QString Tempo::text() const
{
    return (isEstimate ? QStringLiteral("≈ ") : QString()) + AudioInfo::bpmString(bpm);
}

FactRow rowOf(const Tempo &tempo)
{
    return {QStringLiteral("Tempo"), tempo.text()};
}

QList<FactRow> rowsOf(const AudioInfo &info)
{
    QList<FactRow> rows;
    const auto add = [&rows](const QString &label, const std::optional<QString> &value) {
        if (value && !value->isEmpty())
            rows.append({label, *value});
    };
    const auto amount = [](const std::optional<int> &number, const QString &unit) {
        return number ? std::optional(QString::number(*number) + unit) : std::nullopt;
    };
    add(QStringLiteral("Format"), info.format);
    add(QStringLiteral("Sample Rate"), info.sampleRateString());
    add(QStringLiteral("Bit Depth"), amount(info.bitDepth, QStringLiteral(" bit")));
    add(QStringLiteral("Channels"), info.channelsString());
    add(QStringLiteral("Bitrate"), amount(info.bitrateKbps, QStringLiteral(" kbps")));
    add(QStringLiteral("Duration"), info.durationString());
    add(QStringLiteral("File Size"), byteCountString(info.byteSize));
    return rows;
}

QList<FactRow> rowsOf(const ImageInfo &info)
{
    QList<FactRow> rows{
        {QStringLiteral("Dimensions"), QStringLiteral("%1 × %2").arg(info.pixelWidth).arg(info.pixelHeight)},
        {QStringLiteral("Format"), info.format},
        {QStringLiteral("File Size"), byteCountString(info.byteSize)}};
    if (info.colorSpace)
        rows.append({QStringLiteral("Color Space"), *info.colorSpace});
    if (info.bitDepth) {
        const QString alpha = info.hasAlpha ? QStringLiteral(" + alpha") : QString();
        rows.append({QStringLiteral("Bit Depth"), QStringLiteral("%1 bit%2").arg(*info.bitDepth).arg(alpha)});
    }
    if (info.dpi && *info.dpi >= 1)
        rows.append({QStringLiteral("Resolution"), QStringLiteral("%1 DPI").arg(*info.dpi)});
    return rows;
}

} // namespace ostrelle
