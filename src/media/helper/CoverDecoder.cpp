#include "media_helper/ByteSource.h"
#include "media_helper/Decoders.h"
#include "media_helper/FileKind.h"

#include <taglib/aifffile.h>
#include <taglib/attachedpictureframe.h>
#include <taglib/flacfile.h>
#include <taglib/flacpicture.h>
#include <taglib/id3v2framefactory.h>
#include <taglib/id3v2tag.h>
#include <taglib/mp4file.h>
#include <taglib/mpegfile.h>
#include <taglib/oggflacfile.h>
#include <taglib/opusfile.h>
#include <taglib/speexfile.h>
#include <taglib/tiostream.h>
#include <taglib/vorbisfile.h>
#include <taglib/wavfile.h>

#include <algorithm>
#include <utility>

namespace ostrelle {
namespace {

constexpr unsigned long kLongestRead = 64UL << 20U;

/// How TagLib reads, from a source that cannot be written.
class TagStream final : public TagLib::IOStream
{
public:
    explicit TagStream(ByteSource &source)
        : m_reader(source)
    {
    }

    TagLib::FileName name() const override { return ""; }
    TagLib::ByteVector readBlock(unsigned long length) override
    {
        const std::uint64_t size = m_reader.source().size();
        const std::uint64_t left = size - std::min(size, m_reader.position());
        const std::uint64_t count = std::min<std::uint64_t>({length, left, kLongestRead});
        TagLib::ByteVector bytes(static_cast<unsigned>(count), 0);
        const std::size_t read = m_reader.read({reinterpret_cast<std::uint8_t *>(bytes.data()), count});
        bytes.resize(static_cast<unsigned>(read));
        return bytes;
    }
    void writeBlock(const TagLib::ByteVector &) override {}
    void insert(const TagLib::ByteVector &, unsigned long, unsigned long) override {}
    void removeBlock(unsigned long, unsigned long) override {}
    bool readOnly() const override { return true; }
    bool isOpen() const override { return true; }
    void seek(long offset, Position from) override
    {
        const auto size = static_cast<long>(m_reader.source().size());
        long begin = 0;
        if (from == Current)
            begin = static_cast<long>(m_reader.position());
        else if (from == End)
            begin = size;
        long place = 0;
        if (!__builtin_add_overflow(begin, offset, &place))
            m_reader.seek(static_cast<std::uint64_t>(std::clamp(place, 0L, size)));
    }
    long tell() const override { return static_cast<long>(m_reader.position()); }
    long length() override { return static_cast<long>(m_reader.source().size()); }
    void truncate(long) override {}

private:
    ByteReader m_reader;
};

HelperStatus decodeCover(const TagLib::ByteVector &bytes, PictureBuilder &builder)
{
    if (bytes.isEmpty())
        return HelperStatus::NoPicture;
    MemorySource cover({reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size()});
    return decodeEmbedded(cover, builder);
}

/// The front cover where pictures say what they show, else the first.
template <typename List>
TagLib::ByteVector chosenPicture(const List &pictures)
{
    TagLib::ByteVector chosen;
    for (const TagLib::FLAC::Picture *picture : pictures) {
        if (chosen.isEmpty() || picture->type() == TagLib::FLAC::Picture::FrontCover)
            chosen = picture->data();
    }
    return chosen;
}

TagLib::ByteVector id3Picture(const TagLib::ID3v2::Tag *tag)
{
    TagLib::ByteVector chosen;
    if (!tag)
        return chosen;
    for (const TagLib::ID3v2::Frame *frame : tag->frameList("APIC")) {
        const auto *picture = dynamic_cast<const TagLib::ID3v2::AttachedPictureFrame *>(frame);
        if (picture && (chosen.isEmpty() || picture->type() == TagLib::ID3v2::AttachedPictureFrame::FrontCover))
            chosen = picture->picture();
    }
    return chosen;
}

template <typename File>
TagLib::ByteVector oggPicture(TagStream &stream)
{
    stream.seek(0, TagLib::IOStream::Beginning);
    File file(&stream, false);
    return file.isValid() && file.tag() ? chosenPicture(file.tag()->pictureList()) : TagLib::ByteVector();
}

} // namespace

HelperStatus decodeMp3Cover(ByteSource &source, PictureBuilder &builder)
{
    TagStream stream(source);
    TagLib::MPEG::File file(&stream, TagLib::ID3v2::FrameFactory::instance(), false);
    return decodeCover(id3Picture(file.ID3v2Tag()), builder);
}

HelperStatus decodeWavCover(ByteSource &source, PictureBuilder &builder)
{
    TagStream stream(source);
    TagLib::RIFF::WAV::File file(&stream, false);
    return decodeCover(id3Picture(file.ID3v2Tag()), builder);
}

HelperStatus decodeAiffCover(ByteSource &source, PictureBuilder &builder)
{
    TagStream stream(source);
    TagLib::RIFF::AIFF::File file(&stream, false);
    return decodeCover(id3Picture(file.tag()), builder);
}

HelperStatus decodeFlacCover(ByteSource &source, PictureBuilder &builder)
{
    TagStream stream(source);
    TagLib::FLAC::File file(&stream, TagLib::ID3v2::FrameFactory::instance(), false);
    return decodeCover(chosenPicture(file.pictureList()), builder);
}

HelperStatus decodeOggCover(ByteSource &source, PictureBuilder &builder)
{
    TagStream stream(source);
    TagLib::ByteVector picture = oggPicture<TagLib::Ogg::Vorbis::File>(stream);
    if (picture.isEmpty())
        picture = oggPicture<TagLib::Ogg::Opus::File>(stream);
    return decodeCover(picture, builder);
}

HelperStatus decodeSpeexCover(ByteSource &source, PictureBuilder &builder)
{
    TagStream stream(source);
    return decodeCover(oggPicture<TagLib::Ogg::Speex::File>(stream), builder);
}

HelperStatus decodeMp4Cover(ByteSource &source, PictureBuilder &builder)
{
    TagStream stream(source);
    TagLib::MP4::File file(&stream, false);
    if (!file.isValid() || !file.tag() || !file.tag()->contains("covr"))
        return HelperStatus::NoPicture;
    const TagLib::MP4::CoverArtList covers = file.tag()->item("covr").toCoverArtList();
    return covers.isEmpty() ? HelperStatus::NoPicture : decodeCover(covers.front().data(), builder);
}

HelperStatus decodeEmbedded(ByteSource &source, PictureBuilder &builder)
{
    std::array<std::uint8_t, 16> head{};
    switch (sniffedKind({head.data(), source.readAt(0, head)})) {
    case FileKind::Jpeg:
        return decodeJpeg(source, builder);
    case FileKind::Png:
        return decodePng(source, builder);
    default:
        return HelperStatus::NoPicture;
    }
}

} // namespace ostrelle
