#pragma once

#include <QMargins>
#include <QPainterPath>
#include <QPoint>
#include <QSize>

namespace ostrelle::onboarding {

// Logical pixels. The content is what the user sees as the window; around it may lie room for its shadow.

inline constexpr QSize kContent{600, 560};
inline constexpr QMargins kShadowRoom{72, 48, 72, 96};
inline constexpr double kCorner = 16;
inline constexpr QSize kPage{600, 504}; ///< above the footer
inline constexpr int kMargin = 32;      ///< of a page, at both sides
inline constexpr int kFooterHeight = kContent.height() - kPage.height();
inline constexpr int kSteps = 5;

/// In the coordinates of a window with this room.
inline QRect contentRect(const QMargins &room)
{
    return {QPoint(room.left(), room.top()), kContent};
}

/// The content's, likewise.
inline QPainterPath outline(const QMargins &room)
{
    QPainterPath path;
    path.addRoundedRect(contentRect(room), kCorner, kCorner);
    return path;
}

} // namespace ostrelle::onboarding
