#pragma once

#include "platform/ColourPicker.h"

#include <QColor>

#include <cstdint>
#include <optional>

#include <xcb/xcb.h>

namespace ostrelle {

/// How a true-colour visual's pixels lie in memory, and what colour they are: 5, 8 or 10 bits a component.
class PixelLayout
{
public:
    /// Of the screen's root window; nothing for palettes and for pixels that are not 16 or 32 bits wide.
    static std::optional<PixelLayout> ofRoot(const xcb_setup_t &setup, const xcb_screen_t &screen);
    PixelLayout(int bitsPerPixel, std::uint32_t red, std::uint32_t green, std::uint32_t blue, bool isBigEndian);

    int bytesPerPixel() const { return m_bytesPerPixel; }
    std::uint32_t valueAt(const uchar *pixel) const;
    /// With all its bits, 0 ... 1, as the screen is told to show it.
    PickedColour colour(std::uint32_t value) const;
    /// The nearest with eight bits.
    QRgb rgb(std::uint32_t value) const;

private:
    struct Component
    {
        std::uint32_t mask;
        int shift;
        double largest;
    };

    static Component component(std::uint32_t mask);
    static double part(std::uint32_t value, const Component &component);

    int m_bytesPerPixel;
    bool m_isBigEndian;
    bool m_isPlain; ///< as QImage::Format_RGB32
    Component m_red;
    Component m_green;
    Component m_blue;
};

} // namespace ostrelle
