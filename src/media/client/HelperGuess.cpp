#include "media_client/HelperGuess.h"

namespace ostrelle {
namespace {

/// More than there are kinds; endings may be made up.
constexpr std::size_t kMostEndings = 64;

} // namespace

void HelperGuess::learn(const Ending &ending, HelperKind helper)
{
    if (helper == HelperKind::Light)
        m_forExtra.erase(ending);
    else if (ending != Ending() && m_forExtra.size() < kMostEndings)
        m_forExtra.insert(ending);
}

} // namespace ostrelle
