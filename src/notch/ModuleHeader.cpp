#include "notch/ModuleHeader.h"

#include "foundation/MakeChild.h"
#include "notch/BackButton.h"
#include "notch/ModuleChromeMetrics.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"

#include <QPainter>

namespace ostrelle {
namespace {

constexpr int kTitleGap = 3;

QString symbolOf(std::optional<KestroModule> module)
{
    return module ? symbol(*module) : QString();
}

} // namespace

ModuleHeader::ModuleHeader(const ControlContext &context, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_back(makeChild<BackButton>(this, context))
{
    const int height = static_cast<int>(chrome::kHeaderHeight);
    setAttribute(Qt::WA_NoSystemBackground);
    setFixedSize(kWidth, height);
    m_back.move(static_cast<int>(chrome::kHeaderPadding), (height - BackButton::kHeight) / 2);
    connect(&m_back, &QAbstractButton::clicked, this, &ModuleHeader::backRequested);
    hide();
}

ModuleHeader::~ModuleHeader() = default;

void ModuleHeader::setModule(std::optional<KestroModule> module)
{
    if (module == m_module)
        return;
    m_previous = std::exchange(m_module, module);
    update();
}

void ModuleHeader::setLook(const Look &look)
{
    m_look = look;
    m_back.setPresence(look.header);
    m_back.setSymbols({.arriving = symbolOf(m_module),
                       .leaving = symbolOf(m_previous),
                       .arrivingOpacity = m_module ? look.arriving : 0,
                       .leavingOpacity = look.leaving});
    setVisible(look.header > 0);
    update();
}

void ModuleHeader::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setFont(Theme::font(FontRole::Title));
    const int left = m_back.x() + m_back.width() + kTitleGap;
    const QRect place(left, 0, width() - left, height());
    const auto paintTitle = [&](std::optional<KestroModule> module, double amount) {
        if (!module || amount <= 0)
            return;
        painter.setPen(faded(m_context.appearance.palette().text1, amount * m_look.header));
        painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter, title(*module));
    };
    paintTitle(m_previous, m_look.leaving);
    paintTitle(m_module, m_look.arriving);
}

} // namespace ostrelle
