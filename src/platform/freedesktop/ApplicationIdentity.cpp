#include "platform/freedesktop/ApplicationIdentity.h"

#include <QLatin1StringView>

#include <array>

namespace ostrelle {

namespace {

struct Alias
{
    const char *name; ///< what this platform reports, in lower case
    const char *identifier;
};

constexpr char kOnePassword[] = "com.1password.1password";
constexpr char kBitwarden[] = "com.bitwarden.desktop";
/// The one entry of the default exclusions that means "the system's own passwords": keyring windows, their prompts, and
/// the password managers that distributions ship.
constexpr char kKeyring[] = "com.apple.keychainaccess";

/// Window classes, Flatpak ids, Snap names, desktop files and program names.
constexpr std::array kAliases{
    Alias{"1password", kOnePassword},
    Alias{"com.1password.1password", kOnePassword},
    Alias{"com.onepassword.onepassword", kOnePassword},
    Alias{"onepassword", kOnePassword},
    Alias{"bitwarden", kBitwarden},
    Alias{"bitwarden-desktop", kBitwarden},
    Alias{"com.bitwarden.desktop", kBitwarden},
    Alias{"seahorse", kKeyring},
    Alias{"org.gnome.seahorse", kKeyring},
    Alias{"org.gnome.seahorse.application", kKeyring},
    Alias{"gcr-prompter", kKeyring},
    Alias{"gcr-viewer", kKeyring},
    Alias{"org.gnome.gcr.prompter", kKeyring},
    Alias{"kwalletmanager", kKeyring},
    Alias{"kwalletmanager5", kKeyring},
    Alias{"kwalletmanager6", kKeyring},
    Alias{"org.kde.kwalletmanager", kKeyring},
    Alias{"org.kde.kwalletmanager5", kKeyring},
    Alias{"org.kde.kwalletmanager6", kKeyring},
    Alias{"kwalletd", kKeyring},
    Alias{"kwalletd5", kKeyring},
    Alias{"kwalletd6", kKeyring},
    Alias{"org.kde.kwalletd5", kKeyring},
    Alias{"org.kde.kwalletd6", kKeyring},
    Alias{"ksshaskpass", kKeyring},
    Alias{"org.kde.ksshaskpass", kKeyring},
    Alias{"ssh-askpass", kKeyring},
    Alias{"pinentry", kKeyring},
    Alias{"pinentry-gnome3", kKeyring},
    Alias{"pinentry-gtk-2", kKeyring},
    Alias{"pinentry-qt", kKeyring},
    Alias{"keepassxc", kKeyring},
    Alias{"org.keepassxc.keepassxc", kKeyring},
    Alias{"keepassx", kKeyring},
    Alias{"keepassx2", kKeyring},
    Alias{"keepass", kKeyring},
    Alias{"keepass2", kKeyring},
    Alias{"keepass.exe", kKeyring},
    Alias{"secrets", kKeyring},
    Alias{"gnome-passwordsafe", kKeyring},
    Alias{"org.gnome.passwordsafe", kKeyring},
    Alias{"org.gnome.world.secrets", kKeyring},
    Alias{"passwordsafe", kKeyring},
    Alias{"pwsafe", kKeyring},
    Alias{"org.qtpass.qtpass", kKeyring},
    Alias{"qtpass", kKeyring},
    Alias{"revelation", kKeyring},
    Alias{"info.olasagasti.revelation", kKeyring},
    Alias{"password-gorilla", kKeyring},
    Alias{"fpm2", kKeyring},
    Alias{"keeweb", kKeyring},
    Alias{"enpass", kKeyring},
};

QStringList aliasesOf(const QString &name)
{
    QStringList found;
    const QString lower = name.toLower();
    for (const Alias &alias : kAliases) {
        if (lower == QLatin1StringView(alias.name)) {
            found << QString::fromLatin1(alias.identifier);
        }
    }
    return found;
}

} // namespace

Application applicationOf(const ApplicationFacts &facts)
{
    QStringList reported{facts.sandboxId, facts.snapName,  facts.toolkitId,     facts.desktopFileId,
                         facts.scopeId,   facts.className, facts.classInstance, facts.executable};
    reported.removeAll(QString());
    reported.removeDuplicates();

    Application application;
    application.identifiers = reported;
    for (const QString &name : reported) {
        application.identifiers << aliasesOf(name);
    }
    application.identifiers.removeDuplicates();
    application.name = !facts.desktopName.isEmpty() ? facts.desktopName
                       : !facts.className.isEmpty() ? facts.className
                                                    : facts.classInstance;
    return application;
}

} // namespace ostrelle
