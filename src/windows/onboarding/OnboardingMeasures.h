#pragma once

#include <QMargins>
#include <QPainterPath>
#include <QPoint>
#include <QSize>

namespace ostrelle::onboarding {

// Logical pixels. The content is what the user sees as the window; around it lies room for its shadow.

inline constexpr QSize kContent{600, 560};
inline constexpr QMargins kShadowRoom{72, 48, 72, 96};
inline constexpr QSize kWindow = kContent.grownBy(kShadowRoom);
inline constexpr double kCorner = 16;
inline constexpr QSize kPage{600, 504}; ///< above the footer
inline constexpr int kMargin = 32;      ///< of a page, at both sides
inline constexpr int kFooterHeight = kContent.height() - kPage.height();
inline constexpr int kSteps = 5;

inline QRect contentRect()
{
    return {QPoint(kShadowRoom.left(), kShadowRoom.top()), kContent};
}

/// The content's, in the window's coordinates.
inline QPainterPath outline()
{
    QPainterPath path;
    path.addRoundedRect(contentRect(), kCorner, kCorner);
    return path;
}

} // namespace ostrelle::onboarding
