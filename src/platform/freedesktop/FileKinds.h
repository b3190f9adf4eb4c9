#pragma once

#include <QStringList>

namespace ostrelle {

/// What choosers show of kinds of files. The first use reads the desktop's MIME database.
namespace fileKinds {

/// The MIME types with each "audio/*" replaced by all known types of that family: not every chooser knows the asterisk.
QStringList typesOf(const QStringList &mimeTypes);
/// Patterns of names ("*.png") of such types.
QStringList namePatternsOf(const QStringList &mimeTypes);

} // namespace fileKinds

} // namespace ostrelle
