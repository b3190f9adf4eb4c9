#include "media_client/HelperGuess.h"

#include <QFileInfo>

#include <algorithm>
#include <string_view>

namespace ostrelle {
namespace {

/// More than there are kinds; endings may be made up.
constexpr std::size_t kMostEndings = 64;

/// Sound as it is sampled is what only the sound helper reads.
bool isNamedUncompressed(const HelperGuess::Ending &ending)
{
    constexpr std::array kEndings{"wav", "wave", "bwf", "rf64", "w64", "aif", "aiff", "aifc", "caf", "au", "snd"};
    const std::string_view name(ending.data());
    return std::find(kEndings.begin(), kEndings.end(), name) != kEndings.end();
}

} // namespace

void HelperGuess::learn(const Ending &ending, HelperKind helper)
{
    if (helper == HelperKind::Light)
        m_forExtra.erase(ending);
    else if (ending != Ending() && m_forExtra.size() < kMostEndings)
        m_forExtra.insert(ending);
}

HelperGuess::Ending endingOf(const QString &path)
{
    HelperGuess::Ending extension{};
    const QString suffix = QFileInfo(path).suffix().toLower();
    const bool isWord = std::all_of(suffix.begin(), suffix.end(),
                                    [](QChar letter) { return letter.unicode() < 0x80 && letter.isLetterOrNumber(); });
    if (isWord && suffix.size() < static_cast<qsizetype>(extension.size()))
        std::transform(suffix.begin(), suffix.end(), extension.begin(), [](QChar letter) { return letter.toLatin1(); });
    return extension;
}

HelperKind firstHelperFor(HelperCommand command, const HelperGuess::Ending &ending)
{
    const bool isSound =
        command == HelperCommand::Tempo || (command == HelperCommand::AudioInfo && isNamedUncompressed(ending));
    if (isSound)
        return HelperKind::Sound;
    const bool isAboutFacts = command == HelperCommand::AudioInfo || command == HelperCommand::ImageInfo;
    return isAboutFacts ? HelperKind::Facts : HelperKind::Light;
}

QString executableOf(HelperKind kind, const QString &folder)
{
    switch (kind) {
    case HelperKind::Facts:
        return folder + QStringLiteral("/ostrelle-media-facts");
    case HelperKind::Light:
        return folder + QStringLiteral("/ostrelle-media");
    case HelperKind::Sound:
        return folder + QStringLiteral("/ostrelle-media-sound");
    case HelperKind::Extra:
        break;
    }
    return folder + QStringLiteral("/ostrelle-media-extra");
}

} // namespace ostrelle
