#include "platform/loupe/LoupeFonts.h"

#include <QFontDatabase>
#include <QString>
#include <QStringList>

namespace ostrelle::loupeFonts {

QFont caption(int pixels, QFont::Weight weight)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setFamilies(QStringList{QStringLiteral("Inter")} + font.families());
    font.setStyleName({});
    font.setItalic(false);
    font.setWeight(weight);
    font.setHintingPreference(QFont::PreferVerticalHinting);
    font.setPixelSize(pixels);
    return font;
}

QFont monospaced(int pixels)
{
    QFont font = caption(pixels, QFont::Medium);
    const QStringList fallback = QFontDatabase::systemFont(QFontDatabase::FixedFont).families();
    font.setFamilies(QStringList{QStringLiteral("JetBrains Mono")} + fallback +
                     QStringList{QStringLiteral("monospace")});
    font.setStyleHint(QFont::Monospace);
    font.setFixedPitch(true);
    return font;
}

} // namespace ostrelle::loupeFonts
