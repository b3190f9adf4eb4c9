#include "records/KestroModule.h"

#include "records/RawValues.h"

namespace ostrelle {
namespace {

struct Texts
{
    QString rawValue;
    QString title;
    QString tileCaption;
    QString symbol;
    QString blurb;
    std::array<QString, 3> highlights;
};

const Texts &textsOf(KestroModule module)
{
    static const std::array<Texts, kAllModules.size()> kTexts = {{
        {QStringLiteral("clipboard"),
         QStringLiteral("Clipboard"),
         QStringLiteral("Clipboard"),
         QStringLiteral("list.clipboard"),
         QStringLiteral("Everything you've copied, one keystroke away."),
         {QStringLiteral("Text, links and images, newest first"),
          QStringLiteral("Pin anything you want kept past the limit"),
          QStringLiteral("Password fields and apps you exclude are never recorded")}},
        {QStringLiteral("color"),
         QStringLiteral("Color"),
         QStringLiteral("Color"),
         QStringLiteral("eyedropper.halffull"),
         QStringLiteral("Sample any pixel as HEX, RGB or HSL."),
         {QStringLiteral("Sample any pixel on the screen"), QStringLiteral("Copy it as HEX, RGB or HSL"),
          QStringLiteral("Keep favorites, and find what you sampled earlier")}},
        {QStringLiteral("assets"),
         QStringLiteral("Assets"),
         QStringLiteral("Assets"),
         QStringLiteral("tray.full"),
         QStringLiteral("A temporary shelf to stage files between apps."),
         {QStringLiteral("Drop files in from anywhere"),
          QStringLiteral("Drag them straight into Logic, Photoshop or Premiere"),
          QStringLiteral("Play an audio file without opening it")}},
        {QStringLiteral("projects"),
         QStringLiteral("Projects"),
         QStringLiteral("Projects"),
         QStringLiteral("folder"),
         QStringLiteral("Permanent shortcuts to the folders you live in."),
         {QStringLiteral("Permanent shortcuts to the folders you live in"),
          QStringLiteral("Open or reveal in Finder in one click"),
          QStringLiteral("Rename and reorder them to suit how you work")}},
        {QStringLiteral("imageInfo"),
         QStringLiteral("Image Info"),
         QStringLiteral("Image"),
         QStringLiteral("photo"),
         QStringLiteral("Dimensions, format and color space."),
         {QStringLiteral("Dimensions, format and color space"),
          QStringLiteral("Drop a file in, or drag it to the top of the screen"),
          QStringLiteral("Everything you checked stays one click away")}},
        {QStringLiteral("audioInfo"),
         QStringLiteral("Audio Info"),
         QStringLiteral("Audio"),
         QStringLiteral("waveform"),
         QStringLiteral("Duration, sample rate, depth and channels."),
         {QStringLiteral("Duration, sample rate, bit depth and channels"),
          QStringLiteral("Tempo read from the tag, or heard by the app"),
          QStringLiteral("Play the file back right where it is")}},
    }};
    return kTexts.at(static_cast<std::size_t>(module));
}

} // namespace

QString rawValue(KestroModule module)
{
    return textsOf(module).rawValue;
}

std::optional<KestroModule> moduleFromRawValue(QStringView raw)
{
    return findByRawValue(kAllModules, raw);
}

QString title(KestroModule module)
{
    return textsOf(module).title;
}

QString tileCaption(KestroModule module)
{
    return textsOf(module).tileCaption;
}

QString symbol(KestroModule module)
{
    return textsOf(module).symbol;
}

QString blurb(KestroModule module)
{
    return textsOf(module).blurb;
}

std::array<QString, 3> highlights(KestroModule module)
{
    return textsOf(module).highlights;
}

} // namespace ostrelle
