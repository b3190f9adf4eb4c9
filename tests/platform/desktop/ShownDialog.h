#pragma once

#include <QStringList>

class QFileDialog;

namespace ostrelle {

/// The toolkit's file dialog that is open now; null when there is none.
QFileDialog *shownDialog();
/// Selects all that the dialog lists once it lists `count`, and presses its confirming button. False when it never
/// does.
bool confirmAll(QFileDialog &dialog, int count);

} // namespace ostrelle
