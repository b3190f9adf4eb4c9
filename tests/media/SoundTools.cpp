#include "SoundTools.h"

#include "media_client/MediaClient.h"

#include <QProcess>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace ostrelle {
namespace {

constexpr int kPatience = 40000; // the sanitizers' helpers are slow to start

/// Seven bits of each byte.
QByteArray syncSafe(qsizetype value)
{
    QByteArray bytes;
    for (int shift = 21; shift >= 0; shift -= 7)
        bytes += char(value >> shift & 0x7f);
    return bytes;
}

} // namespace

void runTool(const QString &folder, const QString &command)
{
    QProcess shell;
    shell.setWorkingDirectory(folder);
    shell.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    shell.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), command});
    if (!shell.waitForFinished(kPatience) || shell.exitCode() != 0)
        std::abort();
}

std::variant<AudioInfo, MediaFailure> audioInfoOf(MediaClient &client, const QString &path)
{
    std::optional<std::variant<AudioInfo, MediaFailure>> result;
    const MediaRequest request = client.audioInfo(path, [&result](const auto &answer) { result = answer; });
    (void)QTest::qWaitFor([&result] { return result.has_value(); }, kPatience);
    return result.value_or(MediaFailure::TimedOut);
}

QByteArray id3Frame(int version, const QByteArray &name, const QByteArray &text)
{
    const QByteArray content = QByteArray(1, '\0') + text;
    if (version == 2)
        return name + bigEndian(quint64(content.size()), 3) + content;
    const QByteArray size = version == 3 ? bigEndian(quint64(content.size()), 4) : syncSafe(content.size());
    return name + size + QByteArray(2, '\0') + content;
}

QByteArray id3Tag(int version, const QByteArray &frames, int flags)
{
    const QByteArray body = frames + QByteArray(64, '\0');
    return "ID3" + QByteArray(1, char(version)) + '\0' + char(flags) + syncSafe(body.size()) + body;
}

QByteArray mp4Box(const QByteArray &type, const QByteArray &content)
{
    return bigEndian(quint64(content.size()) + 8, 4) + type + content;
}

QByteArray bigEndian(quint64 value, int size)
{
    QByteArray bytes;
    for (int i = size - 1; i >= 0; --i)
        bytes += char(value >> (8 * i));
    return bytes;
}

QByteArray littleEndian(quint64 value, int size)
{
    QByteArray bytes = bigEndian(value, size);
    std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

} // namespace ostrelle
