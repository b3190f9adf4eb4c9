#include "app/ForgetRequest.h"

#include "app/RequestRouter.h"
#include "app/Services.h"
#include "clipboard/ClipboardService.h"
#include "files/AssetShelfService.h"
#include "files/RecentThumbnails.h"
#include "foundation/DefaultsDatabase.h"
#include "inspectors/AudioInspector.h"
#include "inspectors/ColorService.h"
#include "inspectors/ImageInspector.h"
#include "records/Forgotten.h"

namespace ostrelle {

namespace {

/// The inspector shows nothing any more, and remembers nothing.
qsizetype forgetFiles(FileInspector &inspector)
{
    const qsizetype count = inspector.recents().items().size();
    inspector.clear();
    inspector.recents().clear();
    inspector.recents().lapse();
    return count;
}

/// All but the clipboard history, and what was on its way there: nothing comes back afterwards. Each store is written
/// anew, also when it was empty: what was in it may have been unreadable.
Forgotten forgetLists(Services &services)
{
    Forgotten forgotten;
    forgotten.shelfItems = services.shelf().items().size();
    services.shelf().eraseAll();
    forgotten.recentFiles = forgetFiles(services.imageInspector()) + forgetFiles(services.audioInspector());
    services.recentThumbnails().forget();
    ColorService &colors = services.colors();
    colors.cancelSampling();
    forgotten.recentColors = colors.recents().size();
    forgotten.favoriteColors = colors.favorites().size();
    colors.clearRecents();
    colors.clearFavorites();
    colors.lapse();
    return forgotten;
}

void answerWhenForgotten(Services &services, const Forgotten &forgotten, const RequestRouter::Reply &reply)
{
    ClipboardService &clipboard = services.clipboard();
    clipboard.eraseAll(/*includingPinned=*/true, [&services, forgotten, reply](bool areClipsErased) {
        services.shelf().whenSaved(
            &services.shelf(), [&services, forgotten, reply, areClipsErased](bool isShelfErased) {
                services.defaults().whenSaved(
                    &services.colors(), [forgotten, reply, isErased = areClipsErased && isShelfErased](bool isSaved) {
                        reply(isErased && isSaved && forgetUnreadable()
                                  ? RequestAnswer::done(forgotten.toJson())
                                  : RequestAnswer::failed(QStringLiteral("forget: not everything could be erased")));
                    });
            });
    });
}

} // namespace

void addForgetRequest(RequestRouter &router, Services &services)
{
    router.addLater(QStringLiteral("forget.all"), [&services](const QJsonObject &, const RequestRouter::Reply &reply) {
        ClipboardService &clipboard = services.clipboard();
        clipboard.whenLoaded(&clipboard, [&services, reply] {
            Forgotten forgotten = forgetLists(services);
            forgotten.clips = services.clipboard().items().size();
            answerWhenForgotten(services, forgotten, reply);
        });
    });
}

} // namespace ostrelle
