#include "windows/PrivacySection.h"

#include "clipboard/ClipboardService.h"
#include "core/SettingsStore.h"
#include "foundation/MakeChild.h"
#include "windows/ConfirmationAlert.h"
#include "windows/controls/PlainEditor.h"
#include "windows/controls/PopupPicker.h"
#include "windows/controls/RowButton.h"

#include <algorithm>
#include <array>

namespace ostrelle {
namespace {

constexpr int kPickerWidth = 88;
constexpr std::array kLimits = {20, 40, 60, 100, 200};

} // namespace

PrivacySection::PrivacySection(const ControlContext &context, const SettingsSurroundings &around, QWidget *parent)
    : SettingsPage(context, parent)
    , m_settings(around.settings)
    , m_clipboard(around.clipboard)
{
    addClipboard(around.popups);
    addExcludedApps(around.pasteboard, around.popups);
}

void PrivacySection::addClipboard(Popups &popups)
{
    SettingsGroup &group = addGroup(QStringLiteral("Clipboard"));
    group.setFooter(QStringLiteral("History is stored only on this Mac, in Application Support. Nothing is ever "
                                   "uploaded."));
    // The service follows the setting by itself.
    addSwitch(group, {.title = QStringLiteral("Remember clipboard history")}, m_settings.bindableClipboardEnabled(),
              [this](bool on) { m_settings.setClipboardEnabled(on); });
    addLimit(group, popups);
    addSwitch(group,
              {.title = QStringLiteral("Skip concealed copies"),
               .subtitle = QStringLiteral("Ignore anything password managers mark as private.")},
              m_settings.bindableIgnoreConcealed(), [this](bool on) { m_settings.setIgnoreConcealed(on); });
    addSwitch(group, {.title = QStringLiteral("Clear history on quit")}, m_settings.bindableClearOnQuit(),
              [this](bool on) { m_settings.setClearOnQuit(on); });
    auto &clear = makeChild<RowButton>(&group.container(), context(), QStringLiteral("Clear history now"));
    group.addRow(clear);
    connect(&clear, &QAbstractButton::clicked, this, &PrivacySection::askBeforeClearing);
}

void PrivacySection::addLimit(SettingsGroup &group, Popups &popups)
{
    QStringList choices;
    for (const int limit : kLimits)
        choices.append(QString::number(limit));
    auto &picker = makeChild<PopupPicker>(&group.container(), context(), popups, choices, kPickerWidth);
    addControl(group,
               {.title = QStringLiteral("Items to keep"), .subtitle = QStringLiteral("Pinned items are always kept.")},
               picker);
    follow<int>(m_settings.bindableClipboardLimit(), [this, &picker] {
        const int limit = m_settings.clipboardLimit();
        const auto found = std::find(kLimits.begin(), kLimits.end(), limit);
        picker.showCurrent(found == kLimits.end() ? -1 : static_cast<int>(found - kLimits.begin()),
                           QString::number(limit));
    });
    connect(&picker, &PopupPicker::chosen, this,
            [this](int index) { m_settings.setClipboardLimit(kLimits.at(static_cast<std::size_t>(index))); });
}

void PrivacySection::askBeforeClearing()
{
    auto &alert = makeChild<ConfirmationAlert>(
        window(), context(),
        ConfirmationAlert::Content{.message = QStringLiteral("Clear clipboard history?"),
                                   .text = QStringLiteral("This removes every item, including pinned ones."),
                                   .confirm = QStringLiteral("Clear")});
    connect(&alert, &ConfirmationAlert::confirmed, &m_clipboard,
            [&clipboard = m_clipboard] { clipboard.eraseAll(/*includingPinned=*/true); });
}

void PrivacySection::addExcludedApps(ClipboardPort &pasteboard, Popups &popups)
{
    SettingsGroup &group = addGroup(QStringLiteral("Excluded Apps"));
    group.setFooter(QStringLiteral("Copies made in these apps are never recorded. Bundle identifiers, one per line."));
    auto &editor = makeChild<PlainEditor>(&group.container(), context(), pasteboard, popups);
    editor.setAccessibleName(QStringLiteral("Excluded Apps"));
    editor.setAccessibleDescription(QStringLiteral("Bundle identifiers, one per line"));
    group.addRow(editor);
    follow<QStringList>(m_settings.bindableExcludedApps(), [this, &editor] {
        // What is being typed may have empty lines and spaces that are not stored.
        if (identifiersIn(editor.toPlainText()) != m_settings.excludedApps())
            editor.showText(m_settings.excludedApps().join(u'\n'));
    });
    connect(&editor, &PlainEditor::edited, this,
            [this](const QString &text) { m_settings.setExcludedApps(identifiersIn(text)); });
}

QStringList PrivacySection::identifiersIn(const QString &text)
{
    const auto isBlank = [](QChar character) { return character == u' ' || character == u'\t'; };
    QStringList identifiers;
    for (const QStringView line : QStringView(text).split(u'\n', Qt::SkipEmptyParts)) {
        const auto *first = std::find_if_not(line.begin(), line.end(), isBlank);
        const auto *last = line.end();
        while (last != first && isBlank(*(last - 1)))
            --last;
        if (first != last)
            identifiers.append(QStringView(first, last).toString());
    }
    return identifiers;
}

} // namespace ostrelle
