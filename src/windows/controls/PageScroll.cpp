#include "windows/controls/PageScroll.h"

#include "foundation/MakeChild.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "windows/WindowColors.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr double kWheelStep = 60;
constexpr int kFadeHeight = 20;
constexpr int kThumbWidth = 5;
constexpr int kThumbEdge = 3;
constexpr int kThumbLeast = 28;

} // namespace

/// Lies over the content and fades it into the page.
class PageScroll::Fade : public QWidget
{
public:
    enum class Edge { Top, Bottom };

    Fade(const ControlContext &context, Edge edge, QWidget *parent)
        : QWidget(parent)
        , m_appearance(context.appearance)
        , m_edge(edge)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        const QColor &page = WindowColors::of(m_appearance).page;
        QLinearGradient gradient(0, 0, 0, height());
        gradient.setColorAt(m_edge == Edge::Top ? 0 : 1, page);
        gradient.setColorAt(m_edge == Edge::Top ? 1 : 0, faded(page, 0));
        QPainter(this).fillRect(rect(), gradient);
    }

private:
    const NotchAppearance &m_appearance;
    Edge m_edge;
};

class PageScroll::Thumb : public QWidget
{
public:
    Thumb(const ControlContext &context, QScrollBar &bar, QWidget *parent)
        : QWidget(parent)
        , m_appearance(context.appearance)
        , m_bar(bar)
    {
    }

    /// In a view of this size.
    void arrange(const QSize &view)
    {
        const int range = m_bar.maximum();
        setVisible(range > 0);
        if (range <= 0)
            return;
        const int room = view.height() - 2 * kThumbEdge;
        const int length = std::max(kThumbLeast, room * view.height() / (view.height() + range));
        m_travel = room - length;
        setGeometry(view.width() - kThumbEdge - kThumbWidth, kThumbEdge + m_travel * m_bar.value() / range, kThumbWidth,
                    length);
        raise();
    }

protected:
    void mousePressEvent(QMouseEvent *event) override
    {
        m_grip = event->globalPosition().y();
        m_start = m_bar.value();
    }
    void mouseMoveEvent(QMouseEvent *event) override
    {
        if (m_travel > 0)
            m_bar.setValue(m_start + static_cast<int>(std::lround((event->globalPosition().y() - m_grip) *
                                                                  m_bar.maximum() / m_travel)));
    }
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(WindowColors::of(m_appearance).scrollThumb);
        painter.drawRoundedRect(rect(), kThumbWidth / 2.0, kThumbWidth / 2.0);
    }

private:
    const NotchAppearance &m_appearance;
    QScrollBar &m_bar;
    int m_travel = 0;
    double m_grip = 0;
    int m_start = 0;
};

PageScroll::PageScroll(const ControlContext &context, QWidget *parent)
    : QScrollArea(parent)
    , m_scroll(context, *verticalScrollBar(), kWheelStep)
    , m_top(makeChild<Fade>(this, context, Fade::Edge::Top))
    , m_bottom(makeChild<Fade>(this, context, Fade::Edge::Bottom))
    , m_thumb(makeChild<Thumb>(this, context, *verticalScrollBar()))
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &PageScroll::arrange);
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, &PageScroll::arrange);
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget *, const QWidget *now) { showFocus(now); });
}

PageScroll::~PageScroll()
{
    // What has the focus on the page gives it up as it goes, and then this is no PageScroll any more.
    disconnect(qApp, &QApplication::focusChanged, this, nullptr);
}

/// The toolkit by itself follows keys within the page only, and of an editor shows no more than the caret. What the
/// pointer has pressed stays below it.
void PageScroll::showFocus(const QWidget *focused)
{
    if (focused == nullptr || !widget()->isAncestorOf(focused))
        return;
    if ((focused->focusPolicy() & Qt::ClickFocus) != 0 && focused->underMouse())
        return;
    const QPoint middle = focused->mapTo(widget(), focused->rect().center());
    ensureVisible(middle.x(), middle.y(), 0, focused->height() / 2 + kFadeHeight);
}

void PageScroll::wheelEvent(QWheelEvent *event)
{
    m_scroll.turnWheel(*event);
    event->accept();
}

void PageScroll::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    arrange();
}

void PageScroll::arrange()
{
    const QScrollBar &bar = *verticalScrollBar();
    m_top.setGeometry(0, 0, width(), kFadeHeight);
    m_bottom.setGeometry(0, height() - kFadeHeight, width(), kFadeHeight);
    m_top.setVisible(bar.value() > 0);
    m_bottom.setVisible(bar.value() < bar.maximum());
    m_top.raise();
    m_bottom.raise();
    m_thumb.arrange(size());
}

} // namespace ostrelle
