#include "windows/AboutSection.h"

#include "core/SettingsStore.h"
#include "foundation/MakeChild.h"
#include "notch/AccessibleRole.h"
#include "notch/NotchAppearance.h"
#include "platform/FileOpening.h"
#include "updates/UpdateService.h"
#include "windows/ProgramMark.h"
#include "windows/TextRow.h"
#include "windows/UpdateRow.h"
#include "windows/WindowColors.h"
#include "windows/controls/PushButton.h"

#include <QHBoxLayout>
#include <QPainter>

namespace ostrelle {
namespace {

constexpr double kMarkSize = 64;
constexpr double kTextGap = 16;
constexpr double kNameLine = 22;
constexpr double kTaglineLine = 17;
constexpr double kVersionLine = 15;

} // namespace

class AboutSection::Header : public QWidget
{
public:
    Header(const ControlContext &context, const QString &version, QWidget *parent)
        : QWidget(parent)
        , m_appearance(context.appearance)
    {
        setFixedHeight(static_cast<int>(kMarkSize));
        setAccessibleRole(*this, QAccessible::StaticText);
        setAccessibleName(QStringLiteral("Ostrelle"));
        setAccessibleDescription(QStringLiteral("Version ") + version);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        const WindowColors &colors = WindowColors::of(m_appearance);
        if (m_mark.isNull() || m_mark.devicePixelRatio() != devicePixelRatioF())
            m_mark = ProgramMark{.size = kMarkSize}.picture(devicePixelRatioF());
        QPainter painter(this);
        painter.drawPixmap(0, 0, m_mark);
        const double x = kMarkSize + kTextGap;
        double y = (height() - kNameLine - kTaglineLine - kVersionLine) / 2;
        paintLine(painter, QStringLiteral("Ostrelle"), Theme::interfaceFont(18, QFont::DemiBold), kNameLine, {x, y},
                  colors.text1);
        y += kNameLine;
        paintLine(painter, QStringLiteral("Six small tools, just above your work."), Theme::font(FontRole::Body),
                  kTaglineLine, {x, y}, colors.text1);
        y += kTaglineLine;
        paintLine(painter, accessibleDescription(), Theme::font(FontRole::Caption), kVersionLine, {x, y}, colors.text2);
    }

private:
    const NotchAppearance &m_appearance;
    QPixmap m_mark; ///< null until it is painted
};

AboutSection::AboutSection(const ControlContext &context, const SettingsSurroundings &around, QWidget *parent)
    : SettingsPage(context, parent)
{
    addContent(makeChild<Header>(this, this->context(), around.updates.currentVersion()));
    addUpdates(around);
    addPrivacy();
    addQuit(around.quit);
}

void AboutSection::addUpdates(const SettingsSurroundings &around)
{
    SettingsStore &settings = around.settings;
    UpdateService &updates = around.updates;
    SettingsGroup &group = addGroup(QStringLiteral("Updates"));
    auto &row = makeChild<UpdateRow>(&group.container(), context());
    group.addRow(row);
    const auto show = [&row, &updates, &settings] { row.showState(updates, settings); };
    follow<UpdateState>(updates.bindableState(), show);
    follow<bool>(settings.bindableAutoCheckUpdates(), show);
    connect(&row, &UpdateRow::checkRequested, &updates, [&updates] { updates.check(UpdateService::Check::Manual); });
    connect(&row, &UpdateRow::skipRequested, &updates, &UpdateService::skip);
    connect(&row, &UpdateRow::downloadRequested, this,
            [&opening = around.opening](const QUrl &address) { opening.openAddress(address, {}); });
    addSwitch(group,
              {.title = QStringLiteral("Check for updates automatically"),
               .subtitle = QStringLiteral("On launch, and every six hours after that.")},
              settings.bindableAutoCheckUpdates(), [&settings](bool on) { settings.setAutoCheckUpdates(on); });
}

void AboutSection::addPrivacy()
{
    SettingsGroup &group = addGroup(QStringLiteral("Privacy"));
    QWidget &container = group.container();
    group.addRow(makeChild<TextRow>(&container, context(),
                                    QStringLiteral("The update check reads a small file on the maker's web site, sends "
                                                   "nothing about you or the machine and is the only use of the "
                                                   "network."),
                                    TextRow::Emphasis::Quiet));
    group.addRow(makeChild<TextRow>(&container, context(),
                                    QStringLiteral("No analytics, no account. Nothing you copy, drop or sample ever "
                                                   "leaves this Mac."),
                                    TextRow::Emphasis::Strong));
    group.addRow(makeChild<SettingsRow>(
        &container, context(),
        SettingsRow::Content{.title = QStringLiteral("Local processing"),
                             .subtitle =
                                 QStringLiteral("Clipboard, files, colors and metadata never leave your machine."),
                             .symbol = QStringLiteral("checkmark.seal.fill")},
        nullptr));
}

void AboutSection::addQuit(const std::function<void()> &quit)
{
    auto &line = makeChild<QWidget>(this);
    auto &layout = makeChild<QHBoxLayout>(&line);
    layout.setContentsMargins(0, 0, 0, SettingsGroup::kShadowRoom);
    layout.addStretch();
    auto &button = makeChild<PushButton>(&line, context(), QStringLiteral("Quit Ostrelle"), PushButton::Kind::Plain,
                                         PushButton::Measures());
    layout.addWidget(&button);
    connect(&button, &QAbstractButton::clicked, this, quit, Qt::QueuedConnection);
    addContent(line);
}

} // namespace ostrelle
