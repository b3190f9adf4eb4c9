#include "command/Inspection.h"

#include "command/FileName.h"
#include "command/Output.h"

#include <QJsonObject>

namespace ostrelle {
namespace {

template <typename Value>
void put(QJsonObject &object, const QString &key, const std::optional<Value> &value)
{
    if (value)
        object.insert(key, *value);
}

QJsonObject jsonOf(const AudioInfo &info)
{
    QJsonObject object{{QStringLiteral("name"), info.name},
                       {QStringLiteral("duration"), info.duration},
                       {QStringLiteral("format"), info.format},
                       {QStringLiteral("byteSize"), info.byteSize}};
    put(object, QStringLiteral("sampleRate"), info.sampleRate);
    put(object, QStringLiteral("bitDepth"), info.bitDepth);
    put(object, QStringLiteral("channels"), info.channels);
    put(object, QStringLiteral("bitrateKbps"), info.bitrateKbps);
    put(object, QStringLiteral("bpm"), info.bpm);
    return object;
}

QJsonObject jsonOf(const ImageInfo &info)
{
    QJsonObject object{{QStringLiteral("name"), info.name},
                       {QStringLiteral("pixelWidth"), info.pixelWidth},
                       {QStringLiteral("pixelHeight"), info.pixelHeight},
                       {QStringLiteral("format"), info.format},
                       {QStringLiteral("byteSize"), info.byteSize},
                       {QStringLiteral("hasAlpha"), info.hasAlpha}};
    put(object, QStringLiteral("colorSpace"), info.colorSpace);
    put(object, QStringLiteral("bitDepth"), info.bitDepth);
    put(object, QStringLiteral("dpi"), info.dpi);
    return object;
}

} // namespace

QString inspectionText(const Inspection &inspection)
{
    QList<FactRow> rows;
    if (inspection.tempo)
        rows.append(rowOf(*inspection.tempo));
    rows += inspection.audio ? rowsOf(*inspection.audio) : rowsOf(inspection.image.value_or(ImageInfo()));
    QString text = printable(displayName(inspection.file)) + QLatin1Char('\n');
    constexpr int kLabelWidth = 13;
    for (const FactRow &row : rows)
        text += QStringLiteral("  %1%2\n").arg(row.label, -kLabelWidth).arg(printable(row.value));
    return text;
}

QString inspectionJson(const Inspection &inspection)
{
    QJsonObject object{{QStringLiteral("file"), displayName(inspection.file)},
                       {QStringLiteral("ok"), inspection.isDone()}};
    if (inspection.kind) {
        object.insert(QStringLiteral("kind"),
                      *inspection.kind == MediaKind::Audio ? QStringLiteral("audio") : QStringLiteral("image"));
    }
    if (inspection.audio)
        object.insert(QStringLiteral("info"), jsonOf(*inspection.audio));
    if (inspection.image)
        object.insert(QStringLiteral("info"), jsonOf(*inspection.image));
    if (inspection.tempo) {
        const QString source = inspection.tempo->isEstimate ? QStringLiteral("estimate") : QStringLiteral("tag");
        object.insert(QStringLiteral("tempo"),
                      QJsonObject{{QStringLiteral("bpm"), inspection.tempo->bpm}, {QStringLiteral("source"), source}});
    }
    if (!inspection.isDone())
        object.insert(QStringLiteral("error"), inspection.problem);
    return compactJson(object) + QLatin1Char('\n');
}

} // namespace ostrelle
