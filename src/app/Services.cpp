#include "app/Services.h"

#include "app/ToolRegistration.h"
#include "clipboard/ClipboardService.h"
#include "clipboard/MediaClipImages.h"
#include "core/ForegroundSession.h"
#include "core/LaunchAtLogin.h"
#include "core/SettingsHaptics.h"
#include "core/SettingsStore.h"
#include "files/AssetShelfService.h"
#include "files/AssetThumbnails.h"
#include "files/FilePicker.h"
#include "files/FilePresence.h"
#include "files/MediaThumbnailSource.h"
#include "files/NoAudioPreview.h"
#include "files/NotchDropDelegate.h"
#include "files/ProjectsService.h"
#include "files/RecentThumbnails.h"
#include "foundation/AppPaths.h"
#include "foundation/DefaultsDatabase.h"
#include "foundation/SaveRetry.h"
#include "foundation/SystemTaskScheduler.h"
#include "inspectors/AudioInspector.h"
#include "inspectors/AudioPreviewService.h"
#include "inspectors/ColorService.h"
#include "inspectors/ImageInspector.h"
#include "inspectors/MediaFactSource.h"
#include "media_client/MediaClient.h"
#include "notch/FrameClock.h"
#include "notch/NotchAppearance.h"
#include "notch/NotchController.h"
#include "notch/NotchPanel.h"
#include "notch/NotchViewModel.h"
#include "notch/ToolRegistry.h"
#include "platform/FileChooser.h"
#include "platform/FileOpening.h"
#include "platform/Platform.h"
#include "records/ClipboardStore.h"
#include "shortcuts/NotchShortcutActions.h"
#include "shortcuts/ShortcutService.h"
#include "updates/FeedProcess.h"
#include "updates/UpdateService.h"
#include "windows/SettingsWindowController.h"
#include "windows/onboarding/OnboardingWindowController.h"

#include <QCoreApplication>
#include <QGuiApplication>

namespace ostrelle {

namespace {

/// The member, made with `make` when it is first asked for.
template <typename T, typename Make>
T &ensure(std::unique_ptr<T> &member, Make make)
{
    if (!member)
        member = make();
    return *member;
}

} // namespace

Services::Services(QString backend, QString keeper, UpdateDeployment deployment)
    : m_backend(std::move(backend))
    , m_keeper(std::move(keeper))
    , m_deployment(std::move(deployment))
{
}

Services::~Services() = default;

/// What could not be written is tried again until it is.
template <typename Store>
void Services::keepSaving(Store &store)
{
    auto &retry = m_retries.emplace_back(std::make_unique<SaveRetry>(scheduler(), [&store] { store.retry(); }));
    store.observeSaving([retry = retry.get()](bool isFailing) { retry->follow(isFailing); });
}

TaskScheduler &Services::scheduler()
{
    return ensure(m_scheduler, [] { return std::make_unique<SystemTaskScheduler>(); });
}

DefaultsDatabase &Services::defaults()
{
    return ensure(m_defaults, [this] {
        auto defaults = std::make_unique<DefaultsDatabase>(AppPaths::defaultsFile());
        keepSaving(*defaults);
        return defaults;
    });
}

SettingsStore &Services::settings()
{
    return ensure(m_settings, [this] { return std::make_unique<SettingsStore>(defaults()); });
}

Platform &Services::platform()
{
    return ensure(m_platform, [this] { return Platform::create(m_backend, m_keeper); });
}

Haptics &Services::haptics()
{
    return ensure(m_haptics, [this] { return std::make_unique<SettingsHaptics>(settings(), platform().haptics()); });
}

ForegroundSession &Services::foreground()
{
    return ensure(m_foreground, [] { return std::make_unique<ForegroundSession>(); });
}

NotchAppearance &Services::appearance()
{
    return ensure(m_appearance,
                  [this] { return std::make_unique<NotchAppearance>(settings(), platform().appearance()); });
}

FrameClock &Services::frameClock()
{
    return ensure(m_frameClock, [this] { return std::make_unique<FrameClock>(scheduler()); });
}

NotchViewModel &Services::viewModel()
{
    return ensure(m_viewModel, [this] {
        return std::make_unique<NotchViewModel>(settings(), scheduler(), platform().dragSense(), haptics());
    });
}

NotchController &Services::controller()
{
    return ensure(m_controller, [this] {
        return std::make_unique<NotchController>(viewModel(), settings(), scheduler(), platform());
    });
}

ToolRegistry &Services::tools()
{
    return ensure(m_tools, [this] {
        auto registry = std::make_unique<ToolRegistry>();
        registerTools(*registry, *this);
        return registry;
    });
}

NotchPanel &Services::panel()
{
    return ensure(m_panel, [this] {
        return std::make_unique<NotchPanel>(controller(), settings(), tools(), platform(), scheduler(), updates(),
                                            ControlContext{appearance(), frameClock()});
    });
}

NotchDropDelegate &Services::dropDelegate()
{
    return ensure(m_dropDelegate, [this] {
        return std::make_unique<NotchDropDelegate>(NotchDropDelegate::Surroundings{
            .drags = platform().fileDrags(),
            .controller = controller(),
            .settings = settings(),
            .tools = tools(),
            .scheduler = scheduler(),
            .facts = [this](const QStringList &paths, const QObject *context,
                            const FilePresence::Answer &answer) { filePresence().ask(paths, context, answer); },
            .openTool = [this] { return panel().openTool(); },
        });
    });
}

ShortcutActions &Services::shortcutActions()
{
    return ensure(m_shortcutActions, [this]() -> std::unique_ptr<ShortcutActions> {
        return std::make_unique<NotchShortcutActions>(
            controller(),
            NotchShortcutActions::Sampler{
                .isSampling = [this] { return colors().isSampling(); },
                .sample = [this] { colors().sample(&colors(), [](const std::optional<SampledColor> &) {}); }});
    });
}

ShortcutService &Services::shortcuts()
{
    return ensure(m_shortcuts, [this] {
        return std::make_unique<ShortcutService>(defaults(), platform().hotKeys(), platform().keyboardLayout(),
                                                 shortcutActions());
    });
}

MediaClient &Services::media()
{
    return ensure(m_media, [this] {
        return std::make_unique<MediaClient>(
            scheduler(), MediaClient::Places{QCoreApplication::applicationDirPath(), AppPaths::thumbnails()},
            MediaClient::Helpers{.priority = HelperPriority::Background});
    });
}

ThumbnailSource &Services::thumbnails()
{
    return ensure(m_thumbnails,
                  [this] { return std::make_unique<MediaThumbnailSource>(media(), MediaClient::Links::Refuse); });
}

ThumbnailSource &Services::inspectedThumbnails()
{
    return ensure(m_inspectedThumbnails,
                  [this] { return std::make_unique<MediaThumbnailSource>(media(), MediaClient::Links::Follow); });
}

ClipImages &Services::clipImages()
{
    return ensure(m_clipImages, [this] { return std::make_unique<MediaClipImages>(media()); });
}

ClipboardStore &Services::clipboardStore()
{
    return ensure(m_clipboardStore, [] { return std::make_unique<ClipboardStore>(AppPaths::support()); });
}

ClipboardService &Services::clipboard()
{
    return ensure(m_clipboard, [this] {
        return std::make_unique<ClipboardService>(settings(), platform().clipboard(), clipboardStore(), scheduler(),
                                                  clipImages());
    });
}

FilePresence &Services::filePresence()
{
    return ensure(m_filePresence, [this] { return std::make_unique<FilePresence>(scheduler()); });
}

FilePicker &Services::filePicker()
{
    return ensure(m_filePicker, [this] {
        return std::make_unique<FilePicker>(platform().fileChooser(), foreground(), controller());
    });
}

AudioPreview &Services::audioPreview()
{
    return ensure(m_audioPreview, [this]() -> std::unique_ptr<AudioPreview> {
        const QString helpers = QCoreApplication::applicationDirPath();
        if (!Playback::isInstalled(helpers))
            return std::make_unique<NoAudioPreview>();
        return std::make_unique<AudioPreviewService>(scheduler(), helpers, haptics(), platform().alertSound());
    });
}

JsonListStore<ShelfItem> &Services::shelfStore()
{
    return ensure(m_shelfStore, [this] {
        auto store = std::make_unique<JsonListStore<ShelfItem>>(AppPaths::support());
        keepSaving(*store);
        return store;
    });
}

AssetShelfService &Services::shelf()
{
    return ensure(m_shelf, [this] {
        return std::make_unique<AssetShelfService>(shelfStore(), filePresence(), audioPreview(), haptics());
    });
}

AssetThumbnails &Services::assetThumbnails()
{
    return ensure(m_assetThumbnails,
                  [this] { return std::make_unique<AssetThumbnails>(&thumbnails(), filePresence()); });
}

JsonListStore<Project> &Services::projectsStore()
{
    return ensure(m_projectsStore, [this] {
        auto store = std::make_unique<JsonListStore<Project>>(AppPaths::support());
        keepSaving(*store);
        return store;
    });
}

ProjectsService &Services::projects()
{
    return ensure(m_projects, [this] {
        return std::make_unique<ProjectsService>(projectsStore(), filePresence(), haptics(), filePicker(),
                                                 controller());
    });
}

FactSource &Services::facts()
{
    return ensure(m_facts, [this] { return std::make_unique<MediaFactSource>(media()); });
}

RecentThumbnails &Services::recentThumbnails()
{
    return ensure(m_recentThumbnails, [this] { return std::make_unique<RecentThumbnails>(inspectedThumbnails()); });
}

ImageInspector &Services::imageInspector()
{
    return ensure(m_imageInspector, [this] {
        return std::make_unique<ImageInspector>(
            FileInspector::Surroundings{defaults(), filePresence(), haptics(), scheduler()}, facts(),
            inspectedThumbnails());
    });
}

AudioInspector &Services::audioInspector()
{
    return ensure(m_audioInspector, [this] {
        return std::make_unique<AudioInspector>(
            FileInspector::Surroundings{defaults(), filePresence(), haptics(), scheduler()}, facts(), audioPreview());
    });
}

UpdateService &Services::updates()
{
    return ensure(m_updates, [this] {
        m_feedSource = std::make_unique<FeedProcess>(scheduler(), FeedProcess::installed(m_deployment.version));
        return std::make_unique<UpdateService>(settings(), scheduler(), *m_feedSource, m_deployment);
    });
}

ColorService &Services::colors()
{
    return ensure(m_colors, [this] {
        return std::make_unique<ColorService>(defaults(), platform().colourPicker(), controller());
    });
}

LaunchAtLogin &Services::launchAtLogin()
{
    return ensure(m_launchAtLogin, [this] {
        m_loginItem = LoginItem::create(QStringLiteral(OSTRELLE_APPLICATION_ID),
                                        QCoreApplication::applicationDirPath() + QStringLiteral("/ostrelle"));
        return std::make_unique<LaunchAtLogin>(*m_loginItem);
    });
}

SettingsWindowController &Services::settingsWindow()
{
    return ensure(m_settingsWindow, [this] {
        return std::make_unique<SettingsWindowController>(
            SettingsSurroundings{.settings = settings(),
                                 .appearance = appearance(),
                                 .scheduler = scheduler(),
                                 .launchAtLogin = launchAtLogin(),
                                 .shortcuts = shortcuts(),
                                 .keyboardLayout = platform().keyboardLayout(),
                                 .updates = updates(),
                                 .opening = platform().fileOpening(),
                                 .clipboard = clipboard(),
                                 .pasteboard = platform().clipboard(),
                                 .popups = platform().popups(),
                                 .dragOut = platform().dragOut(),
                                 .dragText = platform().dragText(),
                                 .quit = [] { QGuiApplication::quit(); }},
            controller(), foreground(), platform().ordinaryWindows());
    });
}

OnboardingWindowController &Services::onboardingWindow()
{
    return ensure(m_onboardingWindow, [this] {
        return std::make_unique<OnboardingWindowController>(
            OnboardingSurroundings{
                .settings = settings(), .appearance = appearance(), .scheduler = scheduler(), .shortcuts = shortcuts()},
            controller(), foreground(), platform().ordinaryWindows());
    });
}

} // namespace ostrelle
