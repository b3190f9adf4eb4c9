#pragma once

#include "command/CommandTable.h"

#include <QByteArrayList>
#include <QString>

namespace ostrelle {

/// Opens the notch of the running program, on `tool` unless it is empty, or becomes the program when none runs (same
/// process id). Of several starts at once one becomes the program and the others hand over to it.
ExitStatus openOrBecome(const QString &tool, bool openAtStart);

/// Opens the settings window, by the running program or by becoming it, on the section of this raw value; empty: the
/// first one.
ExitStatus openSettingsOrBecome(const QString &section);

/// Shows the first run, by the running program or by becoming it.
ExitStatus openWelcomeOrBecome();

/// Becomes the program for one task without a notch, beside one that may run; returns only when it cannot be started.
ExitStatus becomeOneShot(const QByteArrayList &arguments);

} // namespace ostrelle
