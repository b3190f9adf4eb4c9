#include "notch/PixelBuffer.h"

namespace ostrelle {

QImage &PixelBuffer::reset(const QSize &size)
{
    const auto width = static_cast<std::size_t>(size.width());
    const std::size_t needed = width * static_cast<std::size_t>(size.height());
    m_image = {};
    if (m_memory.size() < needed)
        m_memory = std::vector<quint32>(needed + needed / 2);
    m_image = QImage(reinterpret_cast<uchar *>(m_memory.data()), size.width(), size.height(),
                     static_cast<qsizetype>(width * sizeof(quint32)), QImage::Format_ARGB32_Premultiplied);
    return m_image;
}

} // namespace ostrelle
