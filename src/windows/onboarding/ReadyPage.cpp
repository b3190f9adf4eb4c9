#include "windows/onboarding/ReadyPage.h"

#include "foundation/MakeChild.h"
#include "notch/AccessibleRole.h"
#include "notch/NotchAppearance.h"
#include "notch/ThemeGradients.h"
#include "notch/controls/ColorMix.h"
#include "shortcuts/ShortcutService.h"
#include "windows/WindowColors.h"
#include "windows/controls/WrappedText.h"
#include "windows/onboarding/LitSymbol.h"
#include "windows/onboarding/OnboardingMeasures.h"
#include "windows/onboarding/PageCard.h"
#include "windows/onboarding/ShortcutLine.h"

#include <QPainter>

namespace ostrelle {
namespace {

constexpr double kMiddle = onboarding::kPage.width() / 2.0;
constexpr QPointF kCheckCentre(kMiddle, 101.5);
constexpr double kCheckGlow = 0.55;
constexpr double kTitleTop = 154;
constexpr double kTitleLine = 30;
constexpr double kAdviceTop = 190;
constexpr double kAdviceLine = 18;
constexpr int kCardTop = 251;
constexpr int kCardWidth = 340;
constexpr int kRow = 44;
constexpr double kPromiseTop = 404;
constexpr double kPromiseLine = 20;

const QString kTitle = QStringLiteral("You're set");
const QString kAdvice = QStringLiteral("Move your pointer to the top of the screen,\nor press one of these.");
const QString kPromise = QStringLiteral("Everything stays on this Mac. No account, no network, no analytics.");

} // namespace

ReadyPage::ReadyPage(const ControlContext &context, ShortcutService &shortcuts, QWidget *parent)
    : QWidget(parent)
    , m_appearance(context.appearance)
    , m_shortcuts(shortcuts)
{
    setAccessibleRole(*this, QAccessible::StaticText);
    setAccessibleName(kTitle);
    setAccessibleDescription(kAdvice + u' ' + kPromise);
    auto &card = makeChild<PageCard>(this, context);
    int y = 0;
    for (const ShortcutAction action : kAllShortcutActions) {
        auto &line = makeChild<ShortcutLine>(&card, context, title(action));
        line.setGeometry(0, y, kCardWidth, kRow);
        line.setDivided(y > 0);
        y += kRow;
        m_lines[action] = &line;
    }
    card.setGeometry(static_cast<int>(kMiddle) - kCardWidth / 2, kCardTop, kCardWidth, y);

    m_watch = shortcuts.bindableCombos().addNotifier([this] { showShortcuts(); });
    connect(&shortcuts, &ShortcutService::keyNamesChanged, this, &ReadyPage::showShortcuts);
    connect(&context.appearance, &NotchAppearance::changed, this, [this] {
        m_check = {};
        update();
    });
    showShortcuts();
}

void ReadyPage::showShortcuts()
{
    const KeyCombos combos = m_shortcuts.combos();
    for (const auto &[action, line] : m_lines) {
        const std::optional<KeyCombo> combo = comboOf(combos, action);
        line->showKeys(combo ? display(*combo, m_shortcuts.keyNames()) : QString());
    }
}

void ReadyPage::paintEvent(QPaintEvent *)
{
    const WindowColors &colors = WindowColors::of(m_appearance);
    const LitSymbol check{.symbol = u"checkmark",
                          .sweep = themeStops(m_appearance.theme(), m_appearance.scheme()),
                          .glow = faded(m_appearance.glow(), kCheckGlow)};
    if (m_check.isNull() || m_check.devicePixelRatio() != devicePixelRatioF())
        m_check = check.picture(devicePixelRatioF());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawPixmap(kCheckCentre - QPointF(check.side(), check.side()) / 2, m_check);
    const auto paintCentred = [&painter](const QString &text, const QFont &font, double top, double lineHeight,
                                         const QColor &color) {
        WrappedText(text, {.font = font, .lineHeight = lineHeight, .alignment = WrappedText::Alignment::Centred},
                    onboarding::kPage.width())
            .paint(painter, {0, top}, color);
    };
    paintCentred(kTitle, Theme::interfaceFont(24, QFont::DemiBold), kTitleTop, kTitleLine, colors.text1);
    double y = kAdviceTop;
    for (const QString &line : kAdvice.split(u'\n')) {
        paintCentred(line, Theme::interfaceFont(12.5, QFont::Normal), y, kAdviceLine, colors.text2);
        y += kAdviceLine;
    }
    paintCentred(kPromise, Theme::interfaceFont(11.5, QFont::Normal), kPromiseTop, kPromiseLine, colors.text2);
}

} // namespace ostrelle
