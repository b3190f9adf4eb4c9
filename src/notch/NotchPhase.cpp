#include "notch/NotchPhase.h"

namespace ostrelle {

QString phaseName(Phase phase)
{
    switch (phase) {
    case Phase::Idle:
        return QStringLiteral("idle");
    case Phase::Hover:
        return QStringLiteral("hover");
    case Phase::Expanded:
        return QStringLiteral("expanded");
    }
    Q_UNREACHABLE();
}

} // namespace ostrelle
