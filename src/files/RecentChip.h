#pragma once

#include "files/RecentEntry.h"
#include "notch/controls/NotchButton.h"

namespace ostrelle {

class ForgetBadge;
class PlayBadge;

/// A recent file as a small plate that opens it. Under the pointer, or with the keyboard's focus, it offers to play the
/// file and to forget it; so does the Delete key.
class RecentChip : public NotchButton
{
    Q_OBJECT
public:
    static constexpr int kPlateWidth = 158;
    static constexpr int kPlateHeight = 42;
    /// How far the forget button reaches beyond the plate, above and at its trailing side.
    static constexpr int kOverhang = 5;

    /// `symbol` stands where there is no picture.
    RecentChip(const ControlContext &context, QString symbol, QWidget *parent);
    ~RecentChip() override;

    const RecentEntry &entry() const { return m_entry; }
    void setEntry(const RecentEntry &entry);
    /// Fades the chip with all that is on it, 0 to 1.
    void setChipPresence(double presence);
    /// The file could not be played.
    void shake();
    /// The chip and what is always on it, in the order of the Tab key. The play badge, which comes and goes, finds its
    /// place behind the chip.
    QList<QWidget *> focusOrder();
    bool hasFocusWithin() const;

    QSize sizeHint() const override { return {kPlateWidth + kOverhang, kPlateHeight + kOverhang}; }

Q_SIGNALS:
    void forgotten();
    void previewToggled();

protected:
    QRectF shape() const override { return {0, kOverhang, kPlateWidth, kPlateHeight}; }
    double cornerRadius() const override;
    bool hitButton(const QPoint &position) const override;
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void refreshBadges();

    ControlContext m_context;
    QString m_symbol;
    RecentEntry m_entry;
    PlayBadge &m_play;
    ForgetBadge &m_forget;
    AnimatedNumber m_ring;
    bool m_isHovered = false;
};

} // namespace ostrelle
