#pragma once

#include "files/RecentListModel.h"
#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"

#include <QString>
#include <QWidget>

namespace ostrelle {

class AudioPreview;
class RecentChipRow;
class RecentRowsView;
class SectionLabel;
class SoftButton;

/// The recent files under an inspector: the newest three as chips or, expanded, all of them as a list.
class RecentFilesStrip : public QWidget
{
    Q_OBJECT
public:
    static constexpr int kCollapsedHeight = 82;
    static constexpr int kExpandedHeight = 168;
    /// At both sides of what is in it.
    static constexpr int kSide = 14;

    /// `symbol` stands where there is no picture.
    RecentFilesStrip(const ControlContext &context, const RecentListModel::Surroundings &surroundings,
                     const QString &symbol, QWidget *parent);
    ~RecentFilesStrip() override;

    bool isExpanded() const { return m_isExpanded; }
    void setExpanded(bool expanded);
    const RecentListModel &recents() const { return m_recents; }
    RecentRowsView &rows() { return m_rows; }

Q_SIGNALS:
    /// The user wants it to be expanded, or not.
    void expansionWanted(bool expanded);
    void opened(const ostrelle::RecentFile &file);
    void forgotten(const ostrelle::RecentFile &file);
    void clearWanted();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    template <typename View>
    void listen(View &view);
    void followRecents();
    void showChips();
    void setFocusOrder();
    void applyExpansion();
    void arrangeHeader();

    ControlContext m_context;
    RecentListModel m_recents;
    AudioPreview *m_preview;
    SectionLabel &m_label;
    SoftButton &m_toggle;
    SoftButton &m_clear;
    RecentChipRow &m_chips;
    RecentRowsView &m_rows;
    bool m_isExpanded = false;
    AnimatedNumber m_expansion; ///< 0 collapsed, 1 expanded
};

} // namespace ostrelle
