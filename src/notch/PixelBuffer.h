#pragma once

#include <QImage>

#include <vector>

namespace ostrelle {

/// Memory for an image whose size changes at every frame. A new allocation per frame would cost more in page faults
/// than the painting.
class PixelBuffer
{
public:
    /// A premultiplied image of this size on the buffer's memory, with undefined content. It replaces the previous one.
    QImage &reset(const QSize &size);
    const QImage &image() const { return m_image; }

private:
    std::vector<quint32> m_memory;
    QImage m_image;
};

} // namespace ostrelle
