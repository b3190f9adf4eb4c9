#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"

#include <QList>
#include <QString>
#include <QUuid>
#include <QWidget>

#include <functional>
#include <map>
#include <memory>

namespace ostrelle {

class RecentChip;
class RecentListModel;
class SoftButton;

/// The newest few files of a list beside each other, and a button for the rest. When the list changes, chips glide to
/// their places, new ones fade in and those of others fade out.
class RecentChipRow : public QWidget
{
    Q_OBJECT
public:
    static constexpr int kMostChips = 3;
    /// Around the chips, for what shows beyond their edges.
    static constexpr int kMargin = 5;

    /// `symbol` stands where there is no picture.
    RecentChipRow(const ControlContext &context, RecentListModel &recents, QString symbol, QWidget *parent);
    ~RecentChipRow() override;

    /// Of everything on it, 0 to 1.
    void setOpacity(double opacity);
    void shake(const QUuid &id);
    /// Gives the keyboard to the first chip, where there is one.
    void focusFirst() { takeFocusAt(0); }
    /// What takes the keyboard, from left to right.
    QList<QWidget *> focusOrder();

    QSize sizeHint() const override;

Q_SIGNALS:
    void opened(const QUuid &id);
    void forgotten(const QUuid &id);
    void previewToggled(const QUuid &id);
    void allWanted();

private:
    /// A chip and where it is on its way.
    struct Place
    {
        Place(RecentChip &of, const ControlContext &context, double at, const std::function<void()> &changed);

        RecentChip &chip;
        AnimatedNumber x;
        AnimatedNumber presence;
        bool isLeaving = false;
    };

    void follow();
    Place &ensurePlace(int row);
    void refresh();
    void placeMore();
    void takeFocusAt(double x);
    void applyLooks();

    ControlContext m_context;
    RecentListModel &m_recents;
    QString m_symbol;
    SoftButton &m_more;
    double m_opacity = 1;
    /// Those that have left leave this with the next change.
    std::map<QUuid, std::unique_ptr<Place>> m_places;
};

} // namespace ostrelle
