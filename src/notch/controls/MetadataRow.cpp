#include "notch/controls/MetadataRow.h"

#include "foundation/MakeChild.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/CaretLineEdit.h"
#include "notch/controls/GlyphButton.h"
#include "notch/controls/Hairline.h"
#include "platform/ClipboardPort.h"
#include "platform/Haptics.h"
#include "records/Motion.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace ostrelle {
namespace {

constexpr double kCopySize = 9.5;
constexpr int kGap = 4;
constexpr double kHoverFade = 0.16;
constexpr int kAccessoryGap = 6;
/// What a line edit keeps free beside its text.
constexpr int kFieldMargin = 4;
/// Its part at the right, which has to lie beyond the row for the text to end with the row.
constexpr int kFieldOverhang = 3;

/// A value that is cut with an ellipsis until somebody selects in it.
class ValueField : public CaretLineEdit
{
public:
    using CaretLineEdit::CaretLineEdit;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        if (hasFocus() || hasSelectedText() || fontMetrics().horizontalAdvance(text()) <= width() - kFieldMargin) {
            CaretLineEdit::paintEvent(event);
            return;
        }
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::Text));
        const QRect place = rect().adjusted(kFieldMargin / 2, 0, -kFieldOverhang, 0);
        painter.drawText(place, Qt::AlignRight | Qt::AlignVCenter,
                         fontMetrics().elidedText(text(), Qt::ElideRight, place.width()));
    }
};

} // namespace

MetadataRow::MetadataRow(const ControlContext &context, ClipboardPort &clipboard, Haptics &haptics,
                         const Content &content, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_content(content)
    , m_value(makeChild<ValueField>(this, context.appearance, clipboard))
    , m_copy(makeChild<GlyphButton>(this, context,
                                    GlyphButton::Content{.symbol = QStringLiteral("square.on.square"),
                                                         .help = QStringLiteral("Copy ") + content.label,
                                                         .systemSize = kCopySize}))
    , m_hover(context, 0, [this] {
        m_copy.setPresence(m_hover.value());
        m_copy.setVisible(m_hover.value() > 0);
    })
{
    setFixedHeight(kHeight);
    setAttribute(Qt::WA_NoSystemBackground);
    const bool emphasized = content.emphasis == Emphasis::Emphasized;
    m_value.setFont(Theme::font(emphasized ? FontRole::MonoLarge : FontRole::Mono));
    m_value.setReadOnly(true);
    m_value.setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_value.setText(content.value);
    m_value.setCursorPosition(0);
    m_value.setAccessibleName(content.label);
    m_value.setFocusPolicy(Qt::ClickFocus);
    // The panel's menu is the row's, too.
    m_value.setContextMenuPolicy(Qt::NoContextMenu);
    m_copy.hide();
    connect(&m_copy, &QAbstractButton::clicked, this, [this, &clipboard, &haptics] {
        clipboard.write(m_content.value);
        haptics.tick();
        Q_EMIT copied();
    });
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

void MetadataRow::setValue(const QString &value)
{
    if (value == m_content.value)
        return;
    m_content.value = value;
    m_value.setText(value);
    m_value.setCursorPosition(0);
    arrange();
}

void MetadataRow::setAccessory(QWidget *accessory)
{
    if (accessory == m_accessory)
        return;
    if (m_accessory) {
        m_accessory->hide();
        m_accessory->deleteLater();
    }
    m_accessory = accessory;
    if (accessory != nullptr) {
        accessory->setParent(this);
        accessory->show();
    }
    arrange();
}

bool MetadataRow::event(QEvent *event)
{
    if (event->type() == QEvent::Enter)
        setHovered(true);
    else if (event->type() == QEvent::Leave)
        setHovered(false);
    return QWidget::event(event);
}

void MetadataRow::setHovered(bool hovered)
{
    m_hover.fadeTo(hovered ? 1 : 0, Motion::fade(kHoverFade));
}

void MetadataRow::resizeEvent(QResizeEvent *)
{
    arrange();
}

void MetadataRow::arrange()
{
    int right = width();
    if (m_accessory) {
        const QSize size = m_accessory->sizeHint();
        m_accessory->setGeometry(QRect(QPoint(right - size.width(), (height() - size.height()) / 2), size));
        right -= size.width() + kAccessoryGap;
    }
    const double label = QFontMetricsF(Theme::font(FontRole::Caption)).horizontalAdvance(m_content.label);
    const double text = QFontMetricsF(m_value.font()).horizontalAdvance(m_content.value) + kFieldMargin + 2;
    const int taken = static_cast<int>(std::ceil(label)) + GlyphButton::kDiameter + 2 * kGap;
    const int valueWidth = std::min(static_cast<int>(std::ceil(text)), std::max(right - taken, 0));
    m_value.setGeometry(right - valueWidth + kFieldOverhang, 1, valueWidth, height() - 2);
    m_copy.move(right - valueWidth - kGap - GlyphButton::kDiameter, (height() - GlyphButton::kDiameter) / 2);
}

void MetadataRow::paintEvent(QPaintEvent *)
{
    const Theme::Palette &palette = m_context.appearance.palette();
    QPainter painter(this);
    painter.setFont(Theme::font(FontRole::Caption));
    painter.setPen(palette.text3);
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, m_content.label);
    const double line = hairlineThickness(painter);
    painter.fillRect(QRectF(0, height() - line, width(), line), palette.hairline);
}

} // namespace ostrelle
