#include "windows/ConfirmationAlert.h"

#include "foundation/MakeChild.h"
#include "notch/AccessibleRole.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "windows/WindowColors.h"
#include "windows/controls/DropShadow.h"
#include "windows/controls/PushButton.h"
#include "windows/controls/WrappedText.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <utility>

namespace ostrelle {
namespace {

constexpr double kWidth = 268;
constexpr double kRadius = 16;
constexpr double kPadding = 16;
constexpr double kTop = 22;
constexpr double kSymbolSize = 22;
constexpr double kSymbolBox = 26;
constexpr double kSymbolGap = 9;
constexpr double kMessageLine = 18;
constexpr double kTextGap = 4;
constexpr double kTextLine = 15;
constexpr double kTextWidth = 190;
constexpr double kButtonsGap = 16;
constexpr double kButtonHeight = 30;
constexpr double kButtonGap = 8;
constexpr double kShadowOffset = 14;
constexpr double kShadowDeviation = 15;
constexpr double kShadow = 0.4;

WrappedText textOf(const QString &text)
{
    return WrappedText(text,
                       {.font = Theme::interfaceFont(11.5, QFont::Normal),
                        .lineHeight = kTextLine,
                        .breaking = WrappedText::Breaking::Balanced,
                        .alignment = WrappedText::Alignment::Centred},
                       kTextWidth);
}

} // namespace

ConfirmationAlert::ConfirmationAlert(const ControlContext &context, Content content, QWidget *window)
    : QWidget(window)
    , m_context(context)
    , m_content(std::move(content))
    , m_confirm(makeChild<PushButton>(this, context, m_content.confirm, PushButton::Kind::Destructive,
                                      PushButton::Measures{.height = kButtonHeight}))
    , m_cancel(makeChild<PushButton>(this, context, QStringLiteral("Cancel"), PushButton::Kind::Plain,
                                     PushButton::Measures{.height = kButtonHeight}))
    , m_before(window->focusWidget())
{
    setAccessibleRole(*this, QAccessible::AlertMessage);
    setAccessibleName(m_content.message);
    setAccessibleDescription(m_content.text);
    connect(&m_confirm, &QAbstractButton::clicked, this, [this] {
        finish();
        Q_EMIT confirmed();
    });
    connect(&m_cancel, &QAbstractButton::clicked, this, &ConfirmationAlert::finish);
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
    window->installEventFilter(this);
    m_confirm.installEventFilter(this);
    setGeometry(window->rect());
    show();
    raise();
    m_confirm.setFocus(Qt::OtherFocusReason);
}

void ConfirmationAlert::finish()
{
    hide();
    if (m_before && window()->isAncestorOf(m_before))
        m_before->setFocus(Qt::OtherFocusReason);
    deleteLater();
}

bool ConfirmationAlert::eventFilter(QObject *watched, QEvent *event)
{
    // The second click of a double click on what asks is no answer.
    if (watched == &m_confirm)
        return event->type() == QEvent::MouseButtonDblClick;
    if (event->type() == QEvent::Resize)
        setGeometry(static_cast<QWidget *>(watched)->rect());
    return QWidget::eventFilter(watched, event);
}

/// Tab stays within.
bool ConfirmationAlert::focusNextPrevChild(bool)
{
    PushButton &next = m_confirm.hasFocus() ? m_cancel : m_confirm;
    next.setFocus(Qt::TabFocusReason);
    return true;
}

void ConfirmationAlert::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        finish();
    else if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && !event->isAutoRepeat())
        m_confirm.click();
    // Nothing goes on to the window.
}

void ConfirmationAlert::mousePressEvent(QMouseEvent *)
{
}

void ConfirmationAlert::wheelEvent(QWheelEvent *)
{
}

QRectF ConfirmationAlert::box() const
{
    const double height = kTop + kSymbolBox + kSymbolGap + kMessageLine + kTextGap + textOf(m_content.text).height() +
                          kButtonsGap + 2 * kButtonHeight + kButtonGap + kPadding;
    return {(width() - kWidth) / 2, (this->height() - height) / 2, kWidth, height};
}

void ConfirmationAlert::resizeEvent(QResizeEvent *)
{
    const QRectF box = this->box();
    const double bottom = box.y() + box.height() - kPadding;
    const QSizeF size(kWidth - 2 * kPadding, kButtonHeight);
    m_cancel.setGeometry(QRectF(QPointF(box.x() + kPadding, bottom - kButtonHeight), size).toRect());
    m_confirm.setGeometry(QRectF(QPointF(box.x() + kPadding, bottom - 2 * kButtonHeight - kButtonGap), size).toRect());
}

void ConfirmationAlert::paintEvent(QPaintEvent *)
{
    const WindowColors &colors = WindowColors::of(m_context.appearance);
    const QRectF box = this->box();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), colors.scrim);
    if (m_shadow.isNull() || m_shadow.devicePixelRatio() != devicePixelRatioF())
        m_shadow = dropShadow(box.size(), kRadius, kShadowDeviation, faded(Qt::black, kShadow), devicePixelRatioF());
    const double reach = dropShadowReach(kShadowDeviation);
    painter.drawPixmap(box.topLeft() + QPointF(-reach, kShadowOffset - reach), m_shadow);
    painter.setBrush(colors.menu);
    painter.setPen(QPen(colors.menuOutline, 1));
    painter.drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), kRadius - 0.5, kRadius - 0.5);

    double y = box.y() + kTop;
    paintGlyph(painter, u"exclamationmark.triangle", QRectF(box.x(), y, kWidth, kSymbolBox), kSymbolSize,
               GlyphWeight::Medium, colors.warningInk);
    y += kSymbolBox + kSymbolGap;
    const WrappedText message(m_content.message,
                              {.font = Theme::font(FontRole::Title),
                               .lineHeight = kMessageLine,
                               .alignment = WrappedText::Alignment::Centred},
                              kWidth - 2 * kPadding);
    message.paint(painter, {box.x() + kPadding, y}, colors.text1);
    y += kMessageLine + kTextGap;
    textOf(m_content.text).paint(painter, {box.x() + (kWidth - kTextWidth) / 2, y}, colors.text2);
}

} // namespace ostrelle
