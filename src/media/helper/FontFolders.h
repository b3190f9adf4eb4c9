#pragma once

#include <string>
#include <vector>

namespace ostrelle {

/// Where fonts, their configuration and its cache lie, for text in drawings and documents.
std::vector<std::string> fontFolders();

} // namespace ostrelle
