#pragma once

#include "foundation/DataFolderLock.h"
#include "updates/UpdateDeployment.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace ostrelle {

class AssetShelfService;
class AssetThumbnails;
class AudioInspector;
class AudioPreview;
class ClipImages;
class ClipboardService;
class ClipboardStore;
class ColorService;
class DefaultsDatabase;
class FactSource;
class FeedSource;
class FilePicker;
class FilePresence;
class ForegroundSession;
class FrameClock;
class Haptics;
class ImageInspector;
class LaunchAtLogin;
class LoginItem;
class MediaClient;
class NotchAppearance;
class NotchController;
class NotchDropDelegate;
class NotchPanel;
class NotchViewModel;
class OnboardingWindowController;
class Platform;
class ProjectsService;
class RecentThumbnails;
class SaveRetry;
class SettingsStore;
class ShortcutActions;
class ShortcutService;
class SettingsWindowController;
class SystemTaskScheduler;
class TaskScheduler;
class ThumbnailSource;
class ToolRegistry;
class UpdateService;
struct Project;
struct ShelfItem;
template <typename Record>
class JsonListStore;

/// The one instance of every service: made when first asked for, in start-up order, alive until the process ends. Only
/// app/ reads it; everything else receives what it needs through its constructor.
class Services
{
public:
    /// `keeper` is the executable that keeps the clipboard after the program's end.
    Services(QString backend, QString keeper, UpdateDeployment deployment);
    ~Services();

    TaskScheduler &scheduler();
    DefaultsDatabase &defaults();
    SettingsStore &settings();
    Platform &platform();
    Haptics &haptics();
    ForegroundSession &foreground();
    NotchAppearance &appearance();
    FrameClock &frameClock();
    NotchViewModel &viewModel();
    NotchController &controller();
    ToolRegistry &tools();
    NotchPanel &panel();
    NotchDropDelegate &dropDelegate();
    ShortcutActions &shortcutActions();
    ShortcutService &shortcuts();
    MediaClient &media();
    ThumbnailSource &thumbnails();
    /// The same, of what links lead to.
    ThumbnailSource &inspectedThumbnails();
    ClipImages &clipImages();
    ClipboardStore &clipboardStore();
    ClipboardService &clipboard();
    FilePresence &filePresence();
    FilePicker &filePicker();
    AudioPreview &audioPreview();
    JsonListStore<ShelfItem> &shelfStore();
    AssetShelfService &shelf();
    AssetThumbnails &assetThumbnails();
    JsonListStore<Project> &projectsStore();
    ProjectsService &projects();
    FactSource &facts();
    RecentThumbnails &recentThumbnails();
    ImageInspector &imageInspector();
    AudioInspector &audioInspector();
    ColorService &colors();
    UpdateService &updates();
    LaunchAtLogin &launchAtLogin();
    SettingsWindowController &settingsWindow();
    OnboardingWindowController &onboardingWindow();

private:
    template <typename Store>
    void keepSaving(Store &store);

    QString m_backend;
    QString m_keeper;
    UpdateDeployment m_deployment;
    // In start-up order; destroyed from the last to the first.
    std::unique_ptr<SystemTaskScheduler> m_scheduler;
    std::unique_ptr<DefaultsDatabase> m_defaults;
    std::vector<std::unique_ptr<SaveRetry>> m_retries;
    std::unique_ptr<SettingsStore> m_settings;
    std::unique_ptr<FeedSource> m_feedSource;
    std::unique_ptr<UpdateService> m_updates;
    std::unique_ptr<Platform> m_platform;
    std::unique_ptr<Haptics> m_haptics;
    std::unique_ptr<ForegroundSession> m_foreground;
    std::unique_ptr<NotchAppearance> m_appearance;
    std::unique_ptr<FrameClock> m_frameClock;
    std::unique_ptr<NotchViewModel> m_viewModel;
    std::unique_ptr<NotchController> m_controller;
    std::unique_ptr<MediaClient> m_media;
    std::unique_ptr<ThumbnailSource> m_thumbnails;
    std::unique_ptr<ThumbnailSource> m_inspectedThumbnails;
    std::unique_ptr<ClipImages> m_clipImages;
    std::unique_ptr<ClipboardStore> m_clipboardStore;
    std::unique_ptr<ClipboardService> m_clipboard;
    std::unique_ptr<FilePresence> m_filePresence;
    std::unique_ptr<FilePicker> m_filePicker;
    std::unique_ptr<AudioPreview> m_audioPreview;
    std::unique_ptr<JsonListStore<ShelfItem>> m_shelfStore;
    std::unique_ptr<AssetShelfService> m_shelf;
    std::unique_ptr<AssetThumbnails> m_assetThumbnails;
    std::unique_ptr<JsonListStore<Project>> m_projectsStore;
    std::unique_ptr<ProjectsService> m_projects;
    std::unique_ptr<FactSource> m_facts;
    std::unique_ptr<RecentThumbnails> m_recentThumbnails;
    std::unique_ptr<ImageInspector> m_imageInspector;
    std::unique_ptr<AudioInspector> m_audioInspector;
    std::unique_ptr<ColorService> m_colors;
    std::unique_ptr<ToolRegistry> m_tools;
    std::unique_ptr<NotchPanel> m_panel;
    std::unique_ptr<NotchDropDelegate> m_dropDelegate;
    std::unique_ptr<ShortcutActions> m_shortcutActions;
    std::unique_ptr<ShortcutService> m_shortcuts;
    std::unique_ptr<LoginItem> m_loginItem;
    std::unique_ptr<LaunchAtLogin> m_launchAtLogin;
    std::unique_ptr<SettingsWindowController> m_settingsWindow;
    std::unique_ptr<OnboardingWindowController> m_onboardingWindow;
};

} // namespace ostrelle
