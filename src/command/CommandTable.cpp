#include "command/CommandTable.h"

#include "command/AutostartCommands.h"
#include "command/ClipboardCommands.h"
#include "command/ColorCommands.h"
#include "command/ColorPickCommand.h"
#include "command/DoctorCommand.h"
#include "command/ForgetCommand.h"
#include "command/InspectCommand.h"
#include "command/NotchCommands.h"
#include "command/ProjectsCommands.h"
#include "command/SettingsCommands.h"
#include "command/ShelfCommands.h"
#include "command/ShortcutsCommands.h"
#include "command/ThumbnailCommand.h"
#include "command/UpdateCommands.h"

namespace ostrelle {

namespace {

const QString kToolHelp = QStringLiteral("TOOL is one of clipboard, color, assets, projects, imageInfo, audioInfo.");
const QString kNumberHelp = QStringLiteral("N is the number that \"clipboard list\" shows, counted from 1.");
const QString kShelfNumberHelp = QStringLiteral("N is the number that \"shelf list\" shows, counted from 1.");
const QString kProjectNumberHelp = QStringLiteral("N is the number that \"projects list\" shows, counted from 1.");
const QString kAddHelp = QStringLiteral("What is listed already stays where it is. What does not exist is named on "
                                        "standard error, and the\nexit status is 1, after the rest was added.");
const QString kColorHelp =
    QStringLiteral("COLOR is \"#F80\", \"#FF8000\" or FF8000, \"rgb(255 128 0)\", \"hsl(30 100% 50%)\", "
                   "or as \"color list\" shows it.");
const QString kActionHelp = QStringLiteral("ACTION is one of toggleNotch, openClipboard, pickColor.");
const QString kComboHelp = QStringLiteral(
    "COMBO is written like Shift+Super+V: Control, Alt, Shift and Super, at least one of them, and a key "
    "by the\nname that your layout prints on it, or Space, Return, Tab, Left, F5 and so on. It belongs to the "
    "place of the\nkey, whatever layout is used later.");
const QString kValueHelp = QStringLiteral("VALUE is JSON; a bare word counts as a string, lists are JSON arrays.\n"
                                          "The keys are those of \"settings list\".");

std::vector<CommandSpec> makeTable()
{
    using Q = QString;
    const auto text = [](const char *latin) { return Q::fromUtf8(latin); };
    return {
        {text("open"), text("[TOOL]"), text("Open the notch, on a tool; start the program when it is not running"),
         kToolHelp, false, 0, 1, runOpen},
        {text("close"), {}, text("Close the notch"), {}, false, 0, 0, runClose},
        {text("toggle"), {}, text("Open the notch, or close it when it is open"), {}, false, 0, 0, runToggle},
        {text("quit"), {}, text("End the running program"), {}, false, 0, 0, runQuit},
        {text("status"), {}, text("What the running program is doing"), {}, true, 0, 0, runStatus},
        {text("clipboard list"),
         {},
         text("The clipboard history, in the order the tool shows it"),
         text("With --json the records as stored, without the bytes of images."),
         true,
         0,
         0,
         runClipboardList},
        {text("clipboard copy"), text("N"), text("Put an entry back on the clipboard"), kNumberHelp, false, 1, 1,
         runClipboardCopy},
        {text("clipboard pin"), text("N"), text("Pin an entry, or unpin it"), kNumberHelp, false, 1, 1,
         runClipboardPin},
        {text("clipboard delete"), text("N"), text("Erase an entry for good"), kNumberHelp, false, 1, 1,
         runClipboardDelete},
        {text("clipboard clear"),
         {},
         text("Erase every entry that is not pinned, for good"),
         {},
         false,
         0,
         0,
         runClipboardClear},
        {text("color pick"),
         {},
         text("Point at a pixel of the screen and print its color"),
         text("FORMAT is hex, rgb, hsl or json. Arrow keys go one pixel, with Shift ten; the wheel magnifies. Return, "
              "Space or a\nclick picks, with Shift another one afterwards, and the last one is printed. Escape and a "
              "right click cancel: the\nexit status is 1. What was picked is added to the recent colors."),
         false,
         0,
         0,
         runColorPick,
         {text("[--format FORMAT]")}},
        {text("color list"),
         {},
         text("The recent colors, the newest first, and the favorites"),
         text("With --json one object: \"recents\" and \"favorites\", of each color its sRGB components, 0 to 1, and "
              "its "
              "HEX."),
         true,
         0,
         0,
         runColorList},
        {text("color add"), text("COLOR"), text("Put a color at the head of the recent ones"), kColorHelp, false, 1, 1,
         runColorAdd},
        {text("color favorite"), text("COLOR"), text("Make a color a favorite, or no favorite any more"), kColorHelp,
         false, 1, 1, runColorFavorite},
        {text("color clear"),
         {},
         text("Forget the recent colors, or the favorites"),
         {},
         false,
         0,
         0,
         runColorClear,
         {text("[--favorites]")}},
        {text("shelf list"),
         {},
         text("The files on the shelf, the newest first"),
         text("With --json as they are stored."),
         true,
         0,
         0,
         runShelfList},
        {text("shelf add"), text("FILE…"), text("Put files and folders on the shelf"), kAddHelp, false, 1,
         CommandSpec::kAnyNumber, runShelfAdd},
        {text("shelf remove"), text("N"), text("Take an entry off the shelf; the file stays"), kShelfNumberHelp, false,
         1, 1, runShelfRemove},
        {text("shelf clear"),
         {},
         text("Take everything off the shelf; the files stay"),
         {},
         false,
         0,
         0,
         runShelfClear},
        {text("projects list"),
         {},
         text("The pinned folders, in your order"),
         text("With --json as they are stored."),
         true,
         0,
         0,
         runProjectsList},
        {text("projects add"), text("FOLDER…"), text("Pin folders"), kAddHelp, false, 1, CommandSpec::kAnyNumber,
         runProjectsAdd},
        {text("projects rename"), text("N NAME"), text("Show a pinned folder under another name"),
         kProjectNumberHelp + text("\nAn empty NAME brings the folder's own back."), false, 2, 2, runProjectsRename},
        {text("projects move"), text("N M"), text("Give a pinned folder the number M"), kProjectNumberHelp, false, 2, 2,
         runProjectsMove},
        {text("projects remove"), text("N"), text("Unpin a folder; the folder stays"), kProjectNumberHelp, false, 1, 1,
         runProjectsRemove},
        {text("projects open"), text("N"), text("Open a pinned folder in the file manager"), kProjectNumberHelp, false,
         1, 1, runProjectsOpen},
        {text("inspect"),
         text("FILE…"),
         text("What the inspectors tell of audio files and images"),
         text(
             "\"-\" reads names from standard input, a line each, or with -0 separated by null characters. "
             "--recursive takes\nof folders what is audio or an image by its name. --no-tempo does not listen to files "
             "without a tempo tag.\nN is how many files are read at a time, 1 to 16. With --json an object a line, for "
             "files that were refused\ntoo. The exit status is 1 when a file was refused."),
         true,
         1,
         CommandSpec::kAnyNumber,
         runInspect,
         {text("[--no-tempo]"), text("[--jobs N]"), text("[--recursive]"), text("[-0]")}},
        {text("welcome"),
         {},
         text("Show the quick tour of the first start again; start the program when it is not running"),
         {},
         false,
         0,
         0,
         runWelcome},
        {text("settings"),
         {},
         text("Open the settings window; start the program when it is not running"),
         text("NAME is one of general, modules, shortcuts, appearance, privacy, about. A window that is open comes to "
              "the\nfront as it is."),
         false,
         0,
         0,
         runSettings,
         {text("[--section NAME]")}},
        {text("settings list"), {}, text("All settings with their values"), {}, true, 0, 0, runSettingsList},
        {text("settings get"), text("KEY"), text("The value of a setting, as JSON"), {}, false, 1, 1, runSettingsGet},
        {text("settings set"), text("KEY VALUE"), text("Change a setting; takes effect at once"), kValueHelp, false, 2,
         2, runSettingsSet},
        {text("settings reset"),
         text("KEY"),
         text("Give a setting its default again"),
         {},
         false,
         1,
         1,
         runSettingsReset},
        {text("shortcuts list"),
         {},
         text("The key combinations that work in every program"),
         text("With --json also whether the desktop gave them to the running program (\"state\")."),
         true,
         0,
         0,
         runShortcutsList},
        {text("shortcuts set"), text("ACTION COMBO"), text("Give an action a key combination"),
         kActionHelp + QLatin1Char('\n') + kComboHelp, false, 2, 2, runShortcutsSet},
        {text("shortcuts unset"), text("ACTION"), text("Take an action's key combination away"), kActionHelp, false, 1,
         1, runShortcutsUnset},
        {text("thumbnail"),
         text("FILE"),
         text("Write a picture of a file: an image, a video, the cover of a song, a document"),
         text("FILE.png is not larger than the picture in FILE; N is its longer side, 1 to 1024, else 256.\n"
              "It is made anew and not kept in the desktop's cache."),
         false,
         1,
         1,
         runThumbnail,
         {text("[--size N]"), text("--output FILE.png")}},
        {text("autostart on"), {}, text("Start with the session"), {}, false, 0, 0, runAutostartOn},
        {text("autostart off"), {}, text("Start with the session no more"), {}, false, 0, 0, runAutostartOff},
        {text("autostart status"),
         {},
         text("Whether the program starts with the session"),
         text("Prints \"on\", \"off\", or \"requires approval\" when it was switched off by the desktop's settings."),
         false,
         0,
         0,
         runAutostartStatus},
        {text("update check"),
         {},
         text("Ask the update server for a newer version"),
         text("Also for one that is to be skipped. The exit status is 1 when the check failed, with --json too."),
         true,
         0,
         0,
         runUpdateCheck},
        {text("doctor"),
         {},
         text("What this desktop offers, and what stands in for the rest"),
         text("Of each thing whether it works, falls back to something simpler or is missing, in plain words. The exit "
              "status is\n1 when something that matters is missing. With --json one object: \"complete\" and "
              "\"findings\", of each its\n\"name\", \"state\" and \"text\"."),
         true,
         0,
         0,
         runDoctor},
        {text("forget"),
         {},
         text("Erase what was copied, staged, shown and picked, for good"),
         text(
             "Erases the clipboard history with its pinned entries, the shelf, the recent files, the recent and "
             "favorite "
             "colors,\nand what is left of their files that could not be read. Asks first, unless --yes is given, and "
             "says how much it was.\nWhat stays: the files themselves, settings, shortcuts and pinned folders, what is "
             "on the clipboard now, and the\npictures of files that the desktop keeps for all programs."),
         true,
         0,
         0,
         runForget,
         {text("--all"), text("[--yes]")}},
    };
}

} // namespace

std::span<const CommandSpec> allCommands()
{
    static const std::vector<CommandSpec> table = makeTable();
    return table;
}

} // namespace ostrelle
