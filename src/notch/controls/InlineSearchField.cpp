#include "notch/controls/InlineSearchField.h"

#include "foundation/MakeChild.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/CaretLineEdit.h"
#include "notch/controls/ColorMix.h"
#include "notch/controls/NotchButton.h"
#include "records/Motion.h"

#include <QEvent>
#include <QPainter>

namespace ostrelle {
namespace {

constexpr double kRadius = 7;
constexpr double kBorder = 1;
constexpr double kGlassSize = 11;
constexpr double kGlassLeft = 6;
constexpr double kGlassBox = 16;
constexpr int kTextLeft = 27;
constexpr int kClearBox = 20;
constexpr double kClearSize = 10;
constexpr double kFocusResponse = 0.16;
constexpr double kClearFade = 0.16;

} // namespace

/// Fades in while there is text; hidden, and out of the keyboard's way, when there is none.
class InlineSearchField::ClearButton : public NotchButton
{
public:
    ClearButton(const ControlContext &context, QWidget *parent)
        : NotchButton(context, parent)
        , m_presence(context, 0, [this] {
            setVisible(m_presence.value() > 0);
            update();
        })
    {
        setHelp(QStringLiteral("Clear"));
        setCursor(Qt::ArrowCursor);
        setFocusPolicy(Qt::TabFocus);
        hide();
    }

    void setPresent(bool present)
    {
        if (present)
            show();
        m_presence.fadeTo(present ? 1 : 0, Motion::fade(kClearFade));
    }

protected:
    double cornerRadius() const override { return shape().width() / 2; }
    QRectF shape() const override { return QRectF(rect()).adjusted(3, 3, -3, -3); }
    void paintEvent(QPaintEvent *) override
    {
        const Theme::Palette &palette = appearance().palette();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        paintGlyph(painter, u"xmark.circle.fill", QRectF(rect()), kClearSize, GlyphWeight::Regular,
                   faded(mixed(palette.text3, palette.text2, hoverAmount()), m_presence.value()));
    }

private:
    AnimatedNumber m_presence;
};

InlineSearchField::InlineSearchField(const ControlContext &context, ClipboardPort &clipboard,
                                     const QString &placeholder, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_field(makeChild<CaretLineEdit>(this, context.appearance, clipboard))
    , m_clear(makeChild<ClearButton>(this, context))
    , m_focus(context, 0, [this] { update(); })
{
    setFixedHeight(kHeight);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusProxy(&m_field);
    setCursor(Qt::IBeamCursor);
    m_field.setPlaceholderText(placeholder);
    m_field.setAccessibleName(placeholder);
    m_field.setFont(Theme::font(FontRole::Body));
    m_field.installEventFilter(this);
    connect(&m_field, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_clear.setPresent(!text.isEmpty());
        Q_EMIT textChanged(text);
    });
    connect(&m_clear, &QAbstractButton::clicked, this, [this] {
        m_field.clear();
        m_field.setFocus(Qt::OtherFocusReason);
    });
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

QString InlineSearchField::text() const
{
    return m_field.text();
}

void InlineSearchField::setText(const QString &text)
{
    m_field.setText(text);
}

bool InlineSearchField::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        m_focus.animateTo(event->type() == QEvent::FocusIn ? 1 : 0, Motion::damped(kFocusResponse));
    return QWidget::eventFilter(watched, event);
}

void InlineSearchField::resizeEvent(QResizeEvent *)
{
    const int clearLeft = width() - kClearBox - 2;
    m_field.setGeometry(kTextLeft, 1, clearLeft - kTextLeft, height() - 2);
    m_clear.setGeometry(clearLeft, (height() - kClearBox) / 2, kClearBox, kClearBox);
}

void InlineSearchField::paintEvent(QPaintEvent *)
{
    const Theme::Palette &palette = m_context.appearance.palette();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.tileTint);
    painter.drawRoundedRect(rect(), kRadius, kRadius);
    if (m_focus.value() > 0) {
        const double inset = kBorder / 2;
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(faded(palette.accentEdge, m_focus.value()), kBorder));
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kRadius - inset,
                                kRadius - inset);
    }
    paintGlyph(painter, u"magnifyingglass", QRectF(kGlassLeft, 0, kGlassBox, height()), kGlassSize,
               GlyphWeight::Regular, palette.text3);
}

} // namespace ostrelle
