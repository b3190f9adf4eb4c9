#include "windows/SettingsGroup.h"

#include "foundation/MakeChild.h"
#include "notch/AccessibleRole.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "windows/WindowColors.h"
#include "windows/controls/CardGround.h"
#include "windows/controls/DropShadow.h"
#include "windows/controls/WrappedText.h"

#include <QPainter>
#include <QTextEdit>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr int kTitleHeight = 14;
constexpr int kTitleGap = 7;
constexpr double kIndent = 12;
constexpr double kFooterGap = 8;
constexpr double kFooterLine = 15;
constexpr double kWarningSize = 10.5;
constexpr double kWarningBox = 13;
constexpr double kWarningGap = 6;
constexpr double kFocusEdge = 1;
constexpr double kShadowOffset = 1;
constexpr double kShadowDeviation = 1;

} // namespace

class SettingsGroup::Title : public QWidget
{
public:
    Title(const ControlContext &context, const QString &text, QWidget *parent)
        : QWidget(parent)
        , m_appearance(context.appearance)
    {
        setFixedHeight(kTitleHeight + kTitleGap);
        setAccessibleRole(*this, QAccessible::Heading);
        setAccessibleName(text);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setFont(Theme::font(FontRole::SectionLabel));
        painter.setPen(WindowColors::of(m_appearance).sectionLabel);
        painter.drawText(QRectF(kIndent, 0, width() - kIndent, kTitleHeight), Qt::AlignLeft | Qt::AlignVCenter,
                         accessibleName());
    }

private:
    const NotchAppearance &m_appearance;
};

class SettingsGroup::Card : public QWidget
{
public:
    Card(const ControlContext &context, Container container, QWidget *parent)
        : QWidget(parent)
        , m_appearance(context.appearance)
        , m_container(container)
    {
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        if (m_container == Container::Bare)
            return;
        const WindowColors &colors = WindowColors::of(m_appearance);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF box(rect());
        paintCard(painter, box, kRadius,
                  {.fill = colors.card, .topEdge = colors.cardTopEdge, .outline = colors.cardOutline});
        // A text editor is the container itself.
        if (const auto *editor = findChild<QTextEdit *>(); editor != nullptr && editor->hasFocus()) {
            painter.setPen(QPen(m_appearance.palette().accentEdge, kFocusEdge));
            const double half = kFocusEdge / 2;
            painter.drawRoundedRect(box.adjusted(half, half, -half, -half), kRadius - half, kRadius - half);
        }
    }

private:
    const NotchAppearance &m_appearance;
    Container m_container;
};

class SettingsGroup::Footer : public QWidget
{
public:
    Footer(const ControlContext &context, QWidget *parent)
        : QWidget(parent)
        , m_appearance(context.appearance)
    {
        QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
        policy.setHeightForWidth(true);
        setSizePolicy(policy);
        setAccessibleRole(*this, QAccessible::StaticText);
    }

    void setContent(const QString &text, FooterKind kind)
    {
        setAccessibleName(text);
        m_kind = kind;
        setVisible(!text.isEmpty());
        updateGeometry();
        update();
    }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override
    {
        return static_cast<int>(std::ceil(kFooterGap + broken(width).height()));
    }
    QSize sizeHint() const override { return {0, heightForWidth(kUnbroken)}; }

protected:
    void paintEvent(QPaintEvent *) override
    {
        const WindowColors &colors = WindowColors::of(m_appearance);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QColor &ink = m_kind == FooterKind::Warning ? colors.warningInk : colors.text2;
        if (m_kind == FooterKind::Warning)
            paintGlyph(painter, u"exclamationmark.triangle", QRectF(kIndent, kFooterGap, kWarningBox, kFooterLine),
                       kWarningSize, GlyphWeight::Medium, ink);
        broken(width()).paint(painter, {textX(), kFooterGap}, ink);
    }

private:
    double textX() const { return m_kind == FooterKind::Warning ? kIndent + kWarningBox + kWarningGap : kIndent; }
    WrappedText broken(int width) const
    {
        return WrappedText(accessibleName(), {.font = Theme::font(FontRole::Caption), .lineHeight = kFooterLine},
                           std::max(1.0, width - kIndent - textX()));
    }

    const NotchAppearance &m_appearance;
    FooterKind m_kind = FooterKind::Explanation;
};

SettingsGroup::SettingsGroup(const ControlContext &context, const QString &title, Container container, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_style(container)
    , m_layout(makeChild<QVBoxLayout>(this))
    , m_container(makeChild<Card>(this, context, container))
    , m_rows(makeChild<QVBoxLayout>(&m_container))
    , m_footer(makeChild<Footer>(this, context))
{
    for (QVBoxLayout *layout : {&m_layout, &m_rows}) {
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
    }
    m_layout.setContentsMargins(0, 0, 0, kShadowRoom);
    setAccessibleRole(*this, QAccessible::Grouping);
    setAccessibleName(title);
    if (!title.isEmpty())
        m_layout.addWidget(&makeChild<Title>(this, context, title));
    m_layout.addWidget(&m_container);
    m_layout.addWidget(&m_footer);
    m_footer.hide();
}

void SettingsGroup::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_style == Container::Card)
        paintDropShadow(painter, QRectF(m_container.geometry()).translated(0, kShadowOffset), kRadius, kShadowDeviation,
                        WindowColors::of(m_context.appearance).cardShadow);
}

void SettingsGroup::addRow(QWidget &row)
{
    m_rows.addWidget(&row);
}

void SettingsGroup::setFooter(const QString &text, FooterKind kind)
{
    m_footer.setContent(text, kind);
}

QPainterPath SettingsGroup::rowShape(const QWidget &row)
{
    const QRectF container(QPointF(-row.pos()), QSizeF(row.parentWidget()->size()));
    QPainterPath shape;
    shape.addRoundedRect(container, kRadius, kRadius);
    QPainterPath own;
    own.addRect(row.rect());
    return shape.intersected(own);
}

void SettingsGroup::paintDivider(QPainter &painter, const QWidget &row, const NotchAppearance &appearance, double x)
{
    if (row.y() <= 0)
        return;
    paintRowLine(painter, row, appearance, x);
}

} // namespace ostrelle
