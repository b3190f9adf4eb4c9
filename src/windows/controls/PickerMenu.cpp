#include "windows/controls/PickerMenu.h"

#include "foundation/MakeChild.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/PopupStyle.h"
#include "windows/WindowColors.h"
#include "windows/controls/WrappedText.h"

#include <QAction>
#include <QActionGroup>
#include <QPainter>

namespace ostrelle {
namespace {

constexpr int kPadding = 5;
constexpr int kRowHeight = 25;
constexpr double kRowRadius = 6;
constexpr double kCheckSize = 9.5;
constexpr double kCheckBox = 14;
constexpr double kCheckX = 11;
constexpr double kLineHeight = 16;

} // namespace

PickerMenu::Measures::Measures(int rowWidth)
    : m_rowWidth(rowWidth)
{
}

int PickerMenu::Measures::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const
{
    switch (metric) {
    case PM_MenuHMargin:
    case PM_MenuVMargin:
        return kPadding;
    case PM_MenuPanelWidth:
    case PM_SubMenuOverlap:
        return 0;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

QSize PickerMenu::Measures::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                                             const QWidget *widget) const
{
    return type == CT_MenuItem ? QSize(m_rowWidth, kRowHeight)
                               : QProxyStyle::sizeFromContents(type, option, size, widget);
}

PickerMenu::PickerMenu(const NotchAppearance &appearance, const QStringList &choices, int current, int width,
                       QWidget *parent)
    : QMenu(parent)
    , m_appearance(appearance)
    , m_measures(width - 2 * kPadding)
{
    setStyle(&m_measures);
    auto &group = makeChild<QActionGroup>(this);
    for (int i = 0; i < choices.size(); ++i) {
        QAction *action = addAction(choices.at(i));
        action->setCheckable(true);
        action->setChecked(i == current);
        group.addAction(action);
        connect(action, &QAction::triggered, this, [this, i] { Q_EMIT chosen(i); });
        if (i == current)
            setActiveAction(action);
    }
    connect(&appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

PickerMenu::~PickerMenu()
{
    // The style is a member and gone before the base class is.
    setStyle(nullptr);
}

int PickerMenu::rowTop(int index)
{
    return kPadding + index * kRowHeight;
}

int PickerMenu::rowHeight()
{
    return kRowHeight;
}

void PickerMenu::resizeEvent(QResizeEvent *event)
{
    QMenu::resizeEvent(event);
    setMask(roundedMask(size(), kRadius));
}

void PickerMenu::paintRow(QPainter &painter, QAction &action)
{
    const WindowColors &colors = WindowColors::of(m_appearance);
    const QRectF row = actionGeometry(&action);
    painter.setPen(Qt::NoPen);
    if (activeAction() == &action) {
        painter.setBrush(colors.chosen);
        painter.drawRoundedRect(row, kRowRadius, kRowRadius);
    }
    if (action.isChecked())
        paintGlyph(painter, u"checkmark", QRectF(kCheckX, row.y(), kCheckBox, row.height()), kCheckSize,
                   GlyphWeight::Semibold, colors.accentInk);
    paintLine(painter, action.text(), Theme::font(FontRole::Body), kLineHeight,
              {double(kTextX), row.y() + (row.height() - kLineHeight) / 2}, colors.text1);
}

void PickerMenu::paintEvent(QPaintEvent *)
{
    const WindowColors &colors = WindowColors::of(m_appearance);
    QPainter painter(this);
    painter.fillRect(rect(), colors.menu);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colors.menuOutline, 1));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius - 0.5, kRadius - 0.5);
    for (QAction *action : actions())
        paintRow(painter, *action);
}

} // namespace ostrelle
