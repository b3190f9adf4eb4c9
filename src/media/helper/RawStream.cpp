#include "media_helper/RawStream.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace ostrelle {

int RawStream::read(void *buffer, std::size_t size, std::size_t count)
{
    return static_cast<int>(m_bytes.read({static_cast<std::uint8_t *>(buffer), size * count}) /
                            std::max<std::size_t>(size, 1));
}

int RawStream::seek(INT64 offset, int origin)
{
    if (origin == SEEK_CUR)
        offset += tell();
    else if (origin == SEEK_END)
        offset += size();
    m_bytes.seek(static_cast<std::uint64_t>(std::clamp<INT64>(offset, 0, size())));
    return 0;
}

int RawStream::get_char()
{
    std::array<std::uint8_t, 1> byte{};
    return m_bytes.read(byte) == 1 ? byte[0] : EOF;
}

char *RawStream::gets(char *buffer, int size)
{
    int count = 0;
    while (count + 1 < size) {
        const int letter = get_char();
        if (letter == EOF)
            break;
        buffer[count++] = static_cast<char>(letter);
        if (letter == '\n')
            break;
    }
    if (count == 0)
        return nullptr;
    buffer[count] = 0;
    return buffer;
}

int RawStream::scanf_one(const char *format, void *value)
{
    constexpr int kLongestNumber = 24;
    std::array<char, kLongestNumber + 1> text{};
    for (int i = 0; i < kLongestNumber; ++i) {
        const int letter = get_char();
        // As the library's own streams: a number ends at white space, which is taken with it.
        if (letter == EOF || letter == 0 || letter == ' ' || letter == '\t' || letter == '\n')
            break;
        text[static_cast<std::size_t>(i)] = static_cast<char>(letter);
    }
    // The library asks for one integer or one float.
    char *end = text.data();
    if (std::string_view(format) == "%d") {
        const long number = std::strtol(text.data(), &end, 10);
        *static_cast<int *>(value) = static_cast<int>(number);
    } else {
        *static_cast<float *>(value) = std::strtof(text.data(), &end);
    }
    return end == text.data() ? 0 : 1;
}

} // namespace ostrelle
