#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

namespace ostrelle {

struct BusServices;
struct KernelConfinement;
enum class SoundServerAnswer;

/// One thing that the program takes from the desktop.
struct DesktopFinding
{
    enum class State {
        Works,
        FallsBack, ///< something simpler stands in
        Missing,   ///< the program, or one of its tools, does not work without it
        Unknown
    };

    QString name;
    State state = State::Unknown;
    QString text; ///< one sentence
};

/// What this desktop offers, and what stands in for the rest.
struct DesktopReport
{
    QList<DesktopFinding> findings;

    bool isComplete() const;
    /// For a person at a terminal, in lines.
    QString text() const;
    /// {"complete": true, "findings": [{"name", "state", "text"}]}; states are "works", "fallsBack", "missing" and
    /// "unknown".
    QJsonObject toJson() const;
};

// The findings that need no display. `programs` is the folder of the program's executables.
DesktopFinding dataFinding(const QString &folder);
DesktopFinding busFinding(const BusServices &services);
DesktopFinding openingFinding();
/// `answer` is the sound server's to a player; nothing when no player is installed.
DesktopFinding soundFinding(std::optional<SoundServerAnswer> answer);
QList<DesktopFinding> helperFindings(const QString &programs);
DesktopFinding confinementFinding(const KernelConfinement &kernel);
/// `status` is the running program's, empty when none runs.
DesktopFinding shortcutsFinding(const QJsonObject &status);

} // namespace ostrelle
