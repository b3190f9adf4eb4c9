#pragma once

#include <QString>
#include <QTextDocument>

namespace ostrelle {

/// A tooltip that shows `text` as it is: the name of a file may look like markup.
inline QString plainToolTip(const QString &text)
{
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

} // namespace ostrelle
