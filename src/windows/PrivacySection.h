#pragma once

#include "windows/SettingsPage.h"

#include <QStringList>

namespace ostrelle {

class PlainEditor;

/// What the clipboard history records and keeps.
class PrivacySection : public SettingsPage
{
    Q_OBJECT
public:
    PrivacySection(const ControlContext &context, const SettingsSurroundings &around, QWidget *parent);

    /// The identifiers in a text with one per line.
    static QStringList identifiersIn(const QString &text);

private:
    void addClipboard(Popups &popups);
    void addLimit(SettingsGroup &group, Popups &popups);
    void addExcludedApps(ClipboardPort &pasteboard, Popups &popups);
    void askBeforeClearing();

    SettingsStore &m_settings;
    ClipboardService &m_clipboard;
};

} // namespace ostrelle
