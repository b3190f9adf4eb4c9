#pragma once

#include <optional>

namespace ostrelle {

class ByteSource;

/// What a file's headers tell of its sound.
struct AudioFacts
{
    double duration = 0;              ///< seconds; 0 when it is not told
    std::optional<double> sampleRate; ///< frames per second
    /// Of each sample of a channel. None of compressed streams, which have no samples before they are decoded.
    std::optional<int> bitDepth;
    std::optional<int> channels;
    std::optional<double> bitRate; ///< bits per second, as the stream itself has them
};

/// Each reads the headers of one kind of file. Nothing when they are not what they should be, or of a kind within the
/// kind that another library knows.
using ReadAudioFacts = std::optional<AudioFacts>(ByteSource &source);

// The light ones.
ReadAudioFacts readPcmFacts; ///< WAV, AIFF, CAF
ReadAudioFacts readMpegFacts;
ReadAudioFacts readAdtsFacts;
ReadAudioFacts readFlacFacts;
ReadAudioFacts readOggFacts; ///< Vorbis, Opus, Speex
ReadAudioFacts readMp4Facts; ///< AAC and Apple Lossless in MP4

// The heavy one.
ReadAudioFacts readMediaFacts;

/// Each finds the tempo that the tags of one kind of file state, in beats per minute. Nothing when there is none, or
/// none above 0 and up to 400.
using ReadTempoTag = std::optional<double>(ByteSource &source);

ReadTempoTag readWavTempo;
ReadTempoTag readAiffTempo;
ReadTempoTag readMp4Tempo;

} // namespace ostrelle
