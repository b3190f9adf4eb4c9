#pragma once

#include "records/ClipItem.h"

#include <QMetaType>

namespace ostrelle {

/// What a row of the history shows.
struct ClipboardRow
{
    QUuid id;
    ClipItem::Kind kind = ClipItem::Kind::Text;
    QString title;    ///< one line without control characters, cut to what fits a row
    QString detail;   ///< empty while a very long text is still being counted
    QString appName;  ///< empty when unknown
    QString iconPath; ///< the first path of Files, else empty
    double date = 0;  ///< seconds since 2001-01-01 00:00:00 UTC
    bool pinned = false;
};

} // namespace ostrelle

Q_DECLARE_METATYPE(ostrelle::ClipboardRow)
