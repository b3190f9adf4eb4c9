#include "command/ForgetCommand.h"

#include "command/CommandLine.h"
#include "command/Output.h"
#include "command/StoreAccess.h"
#include "command/StoreSteps.h"
#include "foundation/AppPaths.h"
#include "foundation/DefaultsDatabase.h"
#include "records/ClipboardStore.h"
#include "records/ColorLists.h"
#include "records/Forgotten.h"
#include "records/JsonListStore.h"
#include "records/RecentFile.h"
#include "records/ShelfItem.h"

#include <cctype>
#include <cstdio>
#include <optional>

#include <unistd.h>

namespace ostrelle {

namespace {

constexpr auto kQuestion =
    "This erases the clipboard history with its pinned entries, the shelf, the recent files, and the\n"
    "recent and favorite colors, for good. Files, settings and pinned folders stay.\n"
    "Erase? [y/N] ";

/// The first letter decides, as in other programs that ask so.
bool isAgreed()
{
    std::fputs(kQuestion, stderr);
    int letter = std::getchar();
    while (letter == ' ' || letter == '\t')
        letter = std::getchar();
    return std::tolower(letter) == 'y';
}

/// Each store is written anew, also when it was empty: what was in it may have been unreadable.
bool forgetClips(Forgotten &forgotten)
{
    ClipboardStore store(AppPaths::support());
    forgotten.clips = store.load().size();
    store.removeAll();
    return store.close();
}

bool forgetShelf(Forgotten &forgotten)
{
    JsonListStore<ShelfItem> store(AppPaths::support());
    forgotten.shelfItems = store.load().size();
    store.save({});
    return store.flush();
}

bool forgetDefaults(Forgotten &forgotten)
{
    DefaultsDatabase defaults(AppPaths::defaultsFile());
    for (const QString key : {kImageRecentsKey, kAudioRecentsKey}) {
        const auto files = decodedRecentFiles(defaults.data(key).value_or(QByteArray()));
        forgotten.recentFiles += files ? files->size() : 0;
        defaults.remove(key);
    }
    const ColorLists colors = ColorLists::load(defaults);
    forgotten.recentColors = colors.recents.size();
    forgotten.favoriteColors = colors.favorites.size();
    ColorLists().store(defaults);
    return defaults.flush();
}

/// This process holds the lock. What cannot be erased does not keep the rest.
std::optional<Forgotten> forgetStored()
{
    // That something is unreadable is no news when it is about to be erased.
    muteStoreWarnings();
    Forgotten forgotten;
    const bool hasForgottenClips = forgetClips(forgotten);
    const bool hasForgottenShelf = forgetShelf(forgotten);
    const bool hasForgottenDefaults = forgetDefaults(forgotten);
    const bool isForgotten = hasForgottenClips && hasForgottenShelf && hasForgottenDefaults && forgetUnreadable();
    return isForgotten ? std::optional(forgotten) : std::nullopt;
}

ExitStatus told(const Forgotten &forgotten, const Invocation &invocation)
{
    printOut(invocation.json ? compactJson(forgotten.toJson()) + QLatin1Char('\n') : forgotten.text());
    return ExitStatus::Done;
}

} // namespace

ExitStatus runForget(const Invocation &invocation)
{
    if (!invocation.options.contains(QStringLiteral("--yes"))) {
        if (::isatty(STDIN_FILENO) == 0)
            return fail(ExitStatus::WrongUsage, QStringLiteral("forget: nobody can be asked here; --yes does without"));
        if (!isAgreed())
            return fail(ExitStatus::Failed, QStringLiteral("forget: nothing was erased"));
    }
    StoreAccess access = accessStores();
    if (const auto *problem = std::get_if<QString>(&access))
        return fail(ExitStatus::Failed, *problem);
    if (auto *client = std::get_if<ControlClient>(&access)) {
        const ControlAnswer answer = client->ask(QStringLiteral("forget.all"));
        return answer.status == ExitStatus::Done ? told(Forgotten::fromJson(answer.result.toObject()), invocation)
                                                 : reported(answer);
    }
    const auto forgotten = forgetStored();
    return forgotten ? told(*forgotten, invocation)
                     : fail(ExitStatus::Failed, QStringLiteral("forget: not everything could be erased"));
}

} // namespace ostrelle
