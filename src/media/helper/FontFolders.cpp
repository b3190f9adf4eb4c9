#include "media_helper/FontFolders.h"

#include <cstdlib>

namespace ostrelle {
namespace {

std::string base(const char *variable, const std::string &belowHome)
{
    const char *stated = std::getenv(variable);
    if (stated && stated[0] == '/')
        return stated;
    const char *home = std::getenv("HOME");
    return home && home[0] == '/' ? home + belowHome : std::string();
}

} // namespace

std::vector<std::string> fontFolders()
{
    std::vector<std::string> folders{"/usr/share/fonts",      "/usr/local/share/fonts", "/etc/fonts",
                                     "/usr/share/fontconfig", "/var/cache/fontconfig",  "/usr/share/poppler"};
    const std::string data = base("XDG_DATA_HOME", "/.local/share");
    const std::string configuration = base("XDG_CONFIG_HOME", "/.config");
    const std::string cache = base("XDG_CACHE_HOME", "/.cache");
    if (!data.empty())
        folders.push_back(data + "/fonts");
    if (!configuration.empty())
        folders.push_back(configuration + "/fontconfig");
    if (!cache.empty())
        folders.push_back(cache + "/fontconfig");
    if (const std::string home = base("", ""); !home.empty())
        folders.push_back(home + "/.fonts");
    return folders;
}

} // namespace ostrelle
