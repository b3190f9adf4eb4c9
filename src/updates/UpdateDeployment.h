#pragma once

#include <QString>
#include <QUrl>

namespace ostrelle {

/// What whoever deploys the program has decided.
struct UpdateDeployment
{
    QUrl feed;       ///< HTTPS; in the domain "invalid" there is no feed
    QUrl homePage;   ///< HTTPS; where to download a release that names no address
    QString version; ///< the running one
};

} // namespace ostrelle
