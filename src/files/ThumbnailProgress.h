#pragma once

#include "files/AssetThumbnails.h"
#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"

#include <QWidget>

namespace ostrelle {

/// A thin line that tells how far the pictures of many new entries are. It comes when more than a few are missing and
/// goes when none is.
class ThumbnailProgress : public QWidget
{
    Q_OBJECT
public:
    static constexpr int kHeight = 2;
    /// So many come without anyone waiting for them.
    static constexpr int kUnnoticed = 8;

    ThumbnailProgress(const ControlContext &context, QWidget *parent);

    void setProgress(const AssetThumbnails::Progress &progress);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    ControlContext m_context;
    AnimatedNumber m_presence;
    AnimatedNumber m_done; ///< 0 to 1
};

} // namespace ostrelle
