#include "inspectors/ColorReadout.h"

#include "foundation/MakeChild.h"
#include "inspectors/ColorValueRow.h"
#include "inspectors/LargeSwatch.h"
#include "notch/controls/FilledButton.h"
#include "notch/controls/SoftButton.h"

namespace ostrelle {
namespace {

constexpr int kReadoutSide = 14;
constexpr int kUnderSwatch = 10;
constexpr QSize kHeart{38, 30};
constexpr double kHeartSize = 14;
constexpr int kHeartGap = 8;
constexpr int kRowsGap = 14; ///< between the swatch and the rows
constexpr int kRowPitch = ColorValueRow::kHeight + 7;

} // namespace

ColorReadout::ColorReadout(const ControlContext &context, QWidget *parent)
    : QWidget(parent)
    , m_swatch(makeChild<LargeSwatch>(this, context))
    , m_heart(makeChild<SoftButton>(this, context,
                                    SoftButton::Content{.symbol = QStringLiteral("heart"),
                                                        .symbolSize = kHeartSize,
                                                        .ground = SoftButton::Ground::Tinted}))
    , m_pick(makeChild<FilledButton>(this, context, QStringLiteral("Pick Color")))
{
    setAttribute(Qt::WA_NoSystemBackground);
    connect(&m_swatch, &QAbstractButton::clicked, this, [this] { Q_EMIT copyWanted(ColorForm::Hex); });
    connect(&m_swatch, &LargeSwatch::menuRequested, this,
            [this](const QPointF &position) { Q_EMIT menuRequested(&m_swatch, position); });
    connect(&m_heart, &QAbstractButton::clicked, this, &ColorReadout::favoriteToggled);
    connect(&m_pick, &QAbstractButton::clicked, this, &ColorReadout::pickWanted);
    for (const ColorForm form : kAllColorForms) {
        auto &row = makeChild<ColorValueRow>(this, context, form);
        connect(&row, &QAbstractButton::clicked, this, [this, form] { Q_EMIT copyWanted(form); });
        m_rows[static_cast<std::size_t>(form)] = &row;
    }
    setFavorite(false);
}

ColorReadout::~ColorReadout() = default;

void ColorReadout::setColor(const SampledColor &color)
{
    m_swatch.setColor(color);
    for (ColorValueRow *row : m_rows)
        row->setValue(colorText(color, row->form()));
}

void ColorReadout::setFavorite(bool favorite)
{
    m_heart.setSymbol(favorite ? QStringLiteral("heart.fill") : QStringLiteral("heart"));
    m_heart.setTone(favorite ? SoftButton::Tone::Accent : SoftButton::Tone::Text);
    m_heart.setHelp(favorite ? QStringLiteral("Remove from favorites") : QStringLiteral("Add to favorites"));
}

void ColorReadout::setCopied(std::optional<ColorForm> form)
{
    for (ColorValueRow *row : m_rows)
        row->setCopied(row->form() == form);
}

QRect ColorReadout::firstRow() const
{
    return m_rows.front()->geometry();
}

void ColorReadout::setFirstRowShown(bool shown)
{
    m_rows.front()->setVisible(shown);
}

QList<QWidget *> ColorReadout::focusOrder() const
{
    QList<QWidget *> order{&m_swatch, &m_heart, &m_pick};
    for (ColorValueRow *row : m_rows)
        order.append(row);
    return order;
}

void ColorReadout::resizeEvent(QResizeEvent *)
{
    m_swatch.move(kReadoutSide, kReadoutSide);
    const int under = kReadoutSide + LargeSwatch::kSize.height() + kUnderSwatch;
    m_heart.setGeometry(QRect(QPoint(kReadoutSide, under), kHeart));
    const int pickLeft = kReadoutSide + kHeart.width() + kHeartGap;
    const int swatchEnd = kReadoutSide + LargeSwatch::kSize.width();
    m_pick.setGeometry(pickLeft, under, swatchEnd - pickLeft, kHeart.height());
    int top = kReadoutSide;
    for (ColorValueRow *row : m_rows) {
        const int left = swatchEnd + kRowsGap;
        row->setGeometry(left, top, width() - kReadoutSide - left, ColorValueRow::kHeight);
        top += kRowPitch;
    }
}

} // namespace ostrelle
