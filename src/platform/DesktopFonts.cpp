#include "platform/DesktopFonts.h"

#include <QFontDatabase>
#include <QStringList>

namespace ostrelle::desktopFonts {

QFont interfaceFont(QFont::Weight weight)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setFamilies(QStringList{QStringLiteral("Inter")} + font.families());
    font.setStyleName({});
    font.setItalic(false);
    font.setWeight(weight);
    // Full hinting would round every advance to whole pixels, and so every size to the next.
    font.setHintingPreference(QFont::PreferVerticalHinting);
    return font;
}

QFont monospacedFont()
{
    QFont font = interfaceFont(QFont::Medium);
    const QStringList fallback = QFontDatabase::systemFont(QFontDatabase::FixedFont).families();
    font.setFamilies(QStringList{QStringLiteral("JetBrains Mono")} + fallback +
                     QStringList{QStringLiteral("monospace")});
    font.setStyleHint(QFont::Monospace);
    font.setFixedPitch(true);
    return font;
}

} // namespace ostrelle::desktopFonts
