#include "inspectors/ColorTextField.h"

#include "foundation/MakeChild.h"
#include "inspectors/ColorPaint.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/CaretLineEdit.h"
#include "records/ColorText.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>

#include <cmath>

namespace ostrelle {
namespace {

constexpr double kFieldRadius = 11;
constexpr double kFieldBorder = 1;
constexpr double kPreviewLeft = 13;
constexpr double kPreviewSide = 22;
constexpr double kPreviewRadius = 6.5;
constexpr int kFieldLeft = 47;
constexpr int kFieldRight = 13;
constexpr int kLongestText = 100;

} // namespace

ColorTextField::ColorTextField(const ControlContext &context, ClipboardPort &clipboard, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_field(makeChild<CaretLineEdit>(this, context.appearance, clipboard))
    , m_shake(context, [this] { arrange(); })
{
    setAttribute(Qt::WA_NoSystemBackground);
    hide();
    m_field.setFont(Theme::font(FontRole::MonoLarge));
    m_field.setAccessibleName(QStringLiteral("Color"));
    m_field.setMaxLength(kLongestText);
    m_field.setFocusPolicy(Qt::ClickFocus);
    m_field.installEventFilter(this);
    connect(&m_field, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_color = colorFromText(text);
        update();
    });
    connect(&m_field, &QLineEdit::textEdited, this, [this](const QString &text) {
        if (text.isEmpty())
            close();
    });
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

ColorTextField::~ColorTextField()
{
    // A field that has the focus gives it up when nothing but a widget is left of this.
    m_field.removeEventFilter(this);
}

void ColorTextField::open(const QString &text)
{
    m_isOpen = true;
    m_field.setText(text);
    show();
    raise();
    m_field.setFocus(Qt::OtherFocusReason);
}

void ColorTextField::insert(const QString &text)
{
    m_field.insert(text);
}

void ColorTextField::refuse()
{
    m_shake.start();
}

void ColorTextField::close()
{
    if (!m_isOpen)
        return;
    m_isOpen = false;
    Q_EMIT closed();
    hide();
}

void ColorTextField::take()
{
    if (!m_color) {
        refuse();
        return;
    }
    const SampledColor color = *m_color;
    close();
    Q_EMIT accepted(color);
}

bool ColorTextField::handleKey(const QKeyEvent &event)
{
    if (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter)
        take();
    else if (event.key() == Qt::Key_Escape)
        close();
    else
        return false;
    return true;
}

bool ColorTextField::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        if (handleKey(*static_cast<QKeyEvent *>(event)))
            return true;
        break;
    case QEvent::FocusOut: {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (m_isOpen && reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason)
            m_color ? take() : close();
        break;
    }
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void ColorTextField::arrange()
{
    const int shaken = static_cast<int>(std::lround(m_shake.offset()));
    m_field.setGeometry(kFieldLeft + shaken, 1, width() - kFieldLeft - kFieldRight, height() - 2);
    update();
}

void ColorTextField::resizeEvent(QResizeEvent *)
{
    arrange();
}

void ColorTextField::paintEvent(QPaintEvent *)
{
    const Theme::Palette &palette = m_context.appearance.palette();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(m_shake.opacity());
    painter.setPen(QPen(palette.accentEdge, kFieldBorder));
    painter.setBrush(palette.tileTint);
    const double inset = kFieldBorder / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kFieldRadius - inset,
                            kFieldRadius - inset);
    painter.translate(m_shake.offset(), 0);
    painter.setPen(m_color ? palette.swatchEdge : palette.wellEdge);
    painter.setBrush(m_color ? QBrush(paintColor(*m_color)) : QBrush(Qt::NoBrush));
    const QRectF preview(kPreviewLeft, (height() - kPreviewSide) / 2, kPreviewSide, kPreviewSide);
    painter.drawRoundedRect(preview.adjusted(0.5, 0.5, -0.5, -0.5), kPreviewRadius, kPreviewRadius);
}

} // namespace ostrelle
