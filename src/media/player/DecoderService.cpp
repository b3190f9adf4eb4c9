#include "media_player/DecoderService.h"

#include "media_helper/ByteSource.h"
#include "media_helper/RecordSocket.h"
#include "media_helper/Sandbox.h"
#include "media_player/DecoderProtocol.h"

#include <algorithm>
#include <array>
#include <exception>
#include <memory>
#include <optional>
#include <vector>

namespace ostrelle {
namespace {

/// For a song of many hours; a single request has less.
constexpr unsigned kCpuSeconds = 3600;
constexpr unsigned kCpuSecondsPerRequest = 5;

/// One open file.
class Session
{
public:
    explicit Session(const AudioTable &table)
        : m_table(table)
    {
    }

    /// The answer, its samples in samples().
    DecoderAnswer answer(const DecoderRequest &request, FileDescriptor file)
    {
        m_samples.clear();
        switch (request.order) {
        case DecoderOrder::Open:
            return open(std::move(file));
        case DecoderOrder::Read:
            return read(request.frames);
        case DecoderOrder::Seek:
            return {m_stream->seek(request.frame) ? DecoderStatus::Done : DecoderStatus::Unplayable, 0, {}};
        }
        return {DecoderStatus::Unplayable, 0, {}};
    }
    std::span<const float> samples() const { return m_samples; }

private:
    DecoderAnswer open(FileDescriptor file)
    {
        m_file = std::move(file);
        m_source.emplace(m_file.get());
        std::array<std::uint8_t, kSniffedBytes> head{};
        const FileKind kind = sniffedKind({head.data(), m_source->readAt(0, head)});
        const auto row = std::find_if(m_table.rows.begin(), m_table.rows.end(),
                                      [kind](const AudioRow &candidate) { return candidate.kind == kind; });
        OpenAudio *const opener = row == m_table.rows.end() ? m_table.others : row->open;
        if (opener)
            m_stream = opener(*m_source);
        if (m_stream)
            return {DecoderStatus::Done, 0, m_stream->format()};
        return {m_table.others ? DecoderStatus::Unplayable : DecoderStatus::Declined, 0, {}};
    }

    DecoderAnswer read(std::uint32_t frames)
    {
        const auto channels = static_cast<std::size_t>(m_stream->format().channels);
        m_samples.resize(frames * channels);
        const std::size_t count = m_stream->read(m_samples);
        m_samples.resize(count * channels);
        return {DecoderStatus::Done, static_cast<std::uint32_t>(count), {}};
    }

    const AudioTable &m_table;
    FileDescriptor m_file;
    std::optional<FileSource> m_source;
    std::unique_ptr<AudioStream> m_stream;
    std::vector<float> m_samples;
};

} // namespace

int serveDecoder(const AudioTable &table)
{
    SandboxLimits limits;
    limits.addressSpace = table.addressSpace;
    limits.cpuSeconds = kCpuSeconds;
    if (!enterSandbox(limits))
        return 1;
    Session session(table);
    for (;;) {
        DecoderRequest request;
        FileDescriptor file;
        if (receiveRecord(kProgramSocket, &request, sizeof request, file) != static_cast<ssize_t>(sizeof request))
            return 0;
        allowCpuTime(kCpuSecondsPerRequest);
        DecoderAnswer answer;
        try {
            answer = session.answer(request, std::move(file));
        } catch (const std::exception &) {
            answer = {DecoderStatus::OutOfMemory, 0, {}};
        }
        const std::span<const float> samples = session.samples();
        const std::size_t size = answer.frames > 0 ? samples.size_bytes() : 0;
        if (!sendRecord(kProgramSocket, &answer, sizeof answer) || !sendRecord(kProgramSocket, samples.data(), size))
            return 0;
    }
}

} // namespace ostrelle
