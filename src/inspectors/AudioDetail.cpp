#include "inspectors/AudioDetail.h"

#include "foundation/MakeChild.h"
#include "inspectors/AudioInspector.h"
#include "media_client/ByteCount.h"
#include "notch/controls/MetadataRow.h"
#include "notch/controls/SoftButton.h"

namespace ostrelle {
namespace {

constexpr int kAudioSide = 14;
constexpr int kHeadTop = 12;
constexpr int kFactsTop = 86;
constexpr int kFactColumns = 2;

QString tempoLabel()
{
    return QStringLiteral("Tempo");
}

QList<MetadataGrid::Fact> factsOf(const AudioInspection &inspection)
{
    QList<MetadataGrid::Fact> facts;
    const auto add = [&](const QString &label, const std::optional<QString> &value) {
        if (value)
            facts.append({label, *value});
    };
    const auto number = [](const std::optional<int> &value, const QString &unit) {
        return value ? std::optional(QString::number(*value) + unit) : std::nullopt;
    };
    const AudioInfo &info = *inspection.info;
    if (inspection.isDetectingBpm)
        add(tempoLabel(), QStringLiteral("Listening…"));
    else if (const std::optional<double> bpm = inspection.displayedBpm())
        add(tempoLabel(), (inspection.isBpmEstimate() ? QStringLiteral("≈ ") : QString()) + AudioInfo::bpmString(*bpm));
    add(QStringLiteral("Format"), info.format.isEmpty() ? std::nullopt : std::optional(info.format));
    add(QStringLiteral("Sample Rate"), info.sampleRateString());
    add(QStringLiteral("Bit Depth"), number(info.bitDepth, QStringLiteral(" bit")));
    add(QStringLiteral("Channels"), info.channelsString());
    add(QStringLiteral("Bitrate"), number(info.bitrateKbps, QStringLiteral(" kbps")));
    add(QStringLiteral("Duration"), info.durationString());
    add(QStringLiteral("File Size"), byteCountString(info.byteSize));
    return facts;
}

} // namespace

AudioDetail::AudioDetail(const ControlContext &context, AudioPreview &preview, ClipboardPort &clipboard,
                         Haptics &haptics, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_head(makeChild<AudioHead>(this, context, preview))
    , m_facts(makeChild<MetadataGrid>(this, context, clipboard, haptics, kFactColumns))
{
    setAttribute(Qt::WA_NoSystemBackground);
}

AudioDetail::~AudioDetail() = default;

void AudioDetail::setInspection(const AudioInspection &inspection)
{
    if (!inspection.info)
        return;
    m_head.setFile(inspection.path, inspection.info->duration);
    m_facts.setFacts(factsOf(inspection));
    showDoubleTime(inspection);
}

void AudioDetail::showDoubleTime(const AudioInspection &inspection)
{
    MetadataRow *tempo = m_facts.row(tempoLabel());
    if (tempo == nullptr)
        return;
    if (inspection.isDetectingBpm) {
        tempo->setAccessory(nullptr);
        return;
    }
    if (!m_doubleTime || m_doubleTime->parentWidget() != tempo) {
        m_doubleTime = &makeChild<SoftButton>(
            tempo, m_context,
            SoftButton::Content{
                .text = QStringLiteral("×2"), .radius = 6, .padding = {6, 1.5, 6, 1.5}, .font = FontRole::Micro});
        m_doubleTime->setCheckable(true);
        tempo->setAccessory(m_doubleTime);
        connect(m_doubleTime, &QAbstractButton::clicked, this, &AudioDetail::doubleTimeToggled);
    }
    m_doubleTime->setChecked(inspection.isBpmDoubled);
    m_doubleTime->setHelp(inspection.isBpmDoubled ? QStringLiteral("Back to the detected tempo")
                                                  : QStringLiteral("Read it as double time"));
}

void AudioDetail::resizeEvent(QResizeEvent *)
{
    const int width = this->width() - 2 * kAudioSide;
    m_head.setGeometry(kAudioSide, kHeadTop, width, AudioHead::kHeight);
    m_facts.setGeometry(kAudioSide, kFactsTop, width, m_facts.height());
}

} // namespace ostrelle
