#include "windows/onboarding/ReachPage.h"

#include "foundation/MakeChild.h"
#include "windows/onboarding/HowRow.h"
#include "windows/onboarding/NotchDemo.h"
#include "windows/onboarding/OnboardingMeasures.h"
#include "windows/onboarding/PageCard.h"
#include "windows/onboarding/StepHeader.h"

#include <array>

namespace ostrelle {
namespace {

constexpr int kDemoTop = 109;
constexpr int kCardTop = 273;

std::array<HowRow::Content, 3> ways()
{
    return {{{.symbol = QStringLiteral("cursorarrow"),
              .title = QStringLiteral("Point at it"),
              .detail = QStringLiteral("Rest the pointer on the notch and it opens. Click works too."),
              .isFirst = true},
             {.symbol = QStringLiteral("arrow.down.doc"),
              .title = QStringLiteral("Drag a file at it"),
              .detail = QStringLiteral(
                  "Landing zones meet the file before it reaches the edge — drop it on the tool you want.")},
             {.symbol = QStringLiteral("command"),
              .title = QStringLiteral("Or use a shortcut"),
              .detail = QStringLiteral("Jump straight to a tool without moving the pointer at all.")}}};
}

} // namespace

ReachPage::ReachPage(const ControlContext &context, TaskScheduler &scheduler, QWidget *parent)
    : QWidget(parent)
{
    makeChild<StepHeader>(
        this, context, QStringLiteral("It lives at the top of your screen"),
        QStringList(QStringLiteral("Closed, it's a black lozenge fused to the bezel. Open, it's the whole panel.")));
    auto &demo = makeChild<NotchDemo>(this, context, scheduler);
    demo.move((onboarding::kPage.width() - demo.width()) / 2, kDemoTop - NotchDemo::kShadowRoom);
    auto &card = makeChild<PageCard>(this, context);
    int y = 0;
    for (const HowRow::Content &way : ways()) {
        auto &row = makeChild<HowRow>(&card, context, way);
        row.setGeometry(0, y, onboarding::kPage.width() - 2 * onboarding::kMargin, HowRow::kHeight);
        y += HowRow::kHeight;
    }
    card.setGeometry(onboarding::kMargin, kCardTop, onboarding::kPage.width() - 2 * onboarding::kMargin, y);
}

} // namespace ostrelle
