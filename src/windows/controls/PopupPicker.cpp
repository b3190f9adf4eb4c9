#include "windows/controls/PopupPicker.h"

#include "foundation/MakeChild.h"
#include "notch/AccessibleRole.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "platform/Popups.h"
#include "windows/WindowColors.h"
#include "windows/controls/DisabledLook.h"
#include "windows/controls/MenuShadow.h"
#include "windows/controls/PickerMenu.h"
#include "windows/controls/WrappedText.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr int kHeight = 24;
constexpr double kRadius = 7;
constexpr int kTextX = 10;
constexpr double kLineHeight = 16;
constexpr double kMarkSize = 10;
constexpr double kMarkRight = 7;
constexpr double kMarkBox = 12.5;
constexpr double kPressedOpacity = 0.75;

} // namespace

PopupPicker::PopupPicker(const ControlContext &context, Popups &popups, const QStringList &choices, int width,
                         QWidget *parent)
    : NotchButton(context, parent)
    , m_popups(popups)
    , m_choices(choices)
{
    setFixedSize(width, kHeight);
    setFocusPolicy(Qt::TabFocus);
    setAccessibleRole(*this, QAccessible::ComboBox);
    connect(this, &QAbstractButton::pressed, this, &PopupPicker::open);
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

PopupPicker::~PopupPicker() = default;

QString PopupPicker::text() const
{
    return m_choices.value(m_current, m_text);
}

void PopupPicker::showCurrent(int index, const QString &text)
{
    m_current = index;
    m_text = text;
    setAccessibleValue(*this, this->text());
    update();
}

void PopupPicker::choose(int index)
{
    if (index < 0 || index >= m_choices.size() || index == m_current)
        return;
    showCurrent(index);
    Q_EMIT chosen(index);
}

void PopupPicker::open()
{
    const int width = this->width() + PickerMenu::kTextX - kTextX;
    m_menu = std::make_unique<PickerMenu>(appearance(), m_choices, m_current, width, this);
    connect(m_menu.get(), &PickerMenu::chosen, this, &PopupPicker::choose);
    // The menu has the pointer: the button itself hears of no release.
    connect(m_menu.get(), &QMenu::aboutToHide, this, [this] {
        setDown(false);
        Q_EMIT released();
    });
    const double top = (height() - PickerMenu::rowHeight()) / 2.0 - PickerMenu::rowTop(std::max(m_current, 0));
    m_popups.openMenu(*m_menu, *this, QPointF(kTextX - PickerMenu::kTextX, top));
    makeChild<MenuShadow>(window(), appearance(), *m_menu, PickerMenu::kRadius);
}

double PopupPicker::cornerRadius() const
{
    return kRadius;
}

void PopupPicker::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Up:
        choose(m_current - 1);
        break;
    case Qt::Key_Down:
        choose(m_current + 1);
        break;
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F4:
        open();
        break;
    default:
        NotchButton::keyPressEvent(event);
    }
}

void PopupPicker::paintEvent(QPaintEvent *)
{
    const WindowColors &colors = WindowColors::of(appearance());
    const double hover = std::clamp(std::max(hoverAmount(), pressAmount()), 0.0, 1.0);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(opacityOf(*this) * (1 + (kPressedOpacity - 1) * pressAmount()));
    painter.setPen(Qt::NoPen);
    painter.setBrush(mixed(colors.control, colors.controlHover, hover));
    painter.drawRoundedRect(shape(), kRadius, kRadius);
    paintLine(painter, text(), Theme::font(FontRole::Body), kLineHeight, {double(kTextX), (height() - kLineHeight) / 2},
              colors.text1);
    paintGlyph(painter, u"chevron.up.chevron.down", QRectF(width() - kMarkRight - kMarkBox, 0, kMarkBox, height()),
               kMarkSize, GlyphWeight::Semibold, mixed(colors.text2, colors.text1, hover));
}

} // namespace ostrelle
