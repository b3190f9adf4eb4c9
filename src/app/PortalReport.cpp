#include "app/PortalReport.h"

#include "platform/BusServices.h"

#include <array>

namespace ostrelle {
namespace {

using State = DesktopFinding::State;

/// What the program asks an interface for, and what becomes of it without.
struct PortalUse
{
    const char *interface;
    const char *method;
    const char *offered;
    State stateWithout;
    const char *without;
};

constexpr std::array kAlways{
    PortalUse{"FileChooser", "OpenFile", "Files are chosen in the desktop's own dialog.", State::FallsBack,
              "Files are chosen in a plain dialog."},
    PortalUse{"OpenURI", "OpenURI", "Pages open as the desktop wishes.", State::FallsBack,
              "Pages open by xdg-open or gio."},
    PortalUse{"Settings", "ReadAll", "The desktop's style, contrast and wish for less motion are followed.",
              State::FallsBack, "The desktop's style is taken to be dark; its contrast and motion go unnoticed."},
    PortalUse{"FileTransfer", "RetrieveFiles", "Files go to sandboxed programs and come from them.", State::FallsBack,
              "Files that go to sandboxed programs, or come from them, may not open."},
};

constexpr PortalUse kColours{"Screenshot", "PickColor",
                             "The desktop's own color picker stands in where the loupe cannot be shown.", State::Works,
                             "Not needed: the loupe reads the screen by itself."};
constexpr PortalUse kColoursOfGuests{"Screenshot", "PickColor", "Colors are picked with the desktop's own picker.",
                                     State::Missing, "This display server shows no pixels: no color can be picked."};

constexpr PortalUse kKeys{"GlobalShortcuts", "BindShortcuts", "Not needed: the display server hands out keys.",
                          State::Works, "Not needed: the display server hands out keys."};
constexpr PortalUse kKeysOfGuests{"GlobalShortcuts", "BindShortcuts", "Key combinations are asked for there.",
                                  State::FallsBack, "Key combinations are not to be had; commands do the same."};

constexpr PortalUse kStart{"Background", "RequestBackground", "Not needed outside a sandbox.", State::Works,
                           "Not needed outside a sandbox."};
constexpr PortalUse kStartInSandbox{"Background", "RequestBackground", "The start with the session is asked for there.",
                                    State::FallsBack, "The program has to be started by hand in each session."};

DesktopFinding findingOf(const PortalUse &use, const BusServices &services)
{
    const QString interface = QString::fromLatin1(use.interface);
    const bool isOffered = services.portalMethods.contains(interface + u'.' + QLatin1StringView(use.method));
    return {interface, isOffered ? State::Works : use.stateWithout,
            QString::fromLatin1(isOffered ? use.offered : use.without)};
}

DesktopFinding portalItself(BusServices::Portal portal)
{
    const QString name = QStringLiteral("portal");
    switch (portal) {
    case BusServices::Portal::Answers:
        return {name, State::Works, QStringLiteral("The desktop has a portal. What of it is used:")};
    case BusServices::Portal::Silent:
        return {name, State::FallsBack, QStringLiteral("The desktop's portal does not answer. Without it:")};
    case BusServices::Portal::Missing:
        break;
    }
    return {name, State::FallsBack, QStringLiteral("The desktop has no portal. Without it:")};
}

} // namespace

QList<DesktopFinding> portalFindings(const BusServices &services, bool isGuest)
{
    QList<DesktopFinding> findings{portalItself(services.portal)};
    for (const PortalUse &use : kAlways)
        findings.append(findingOf(use, services));
    for (const PortalUse &use : {isGuest ? kColoursOfGuests : kColours, isGuest ? kKeysOfGuests : kKeys,
                                 services.isSandboxed ? kStartInSandbox : kStart})
        findings.append(findingOf(use, services));
    return findings;
}

} // namespace ostrelle
