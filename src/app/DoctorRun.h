#pragma once

namespace ostrelle {

/// The arguments ask what this desktop offers: "--doctor [--json]".
bool isDoctorRun(int argc, char **argv);
/// Prints it, also without a display, beside a program that may run; the exit status is 1 when something that matters
/// is missing.
int runDoctor(int argc, char **argv);

} // namespace ostrelle
