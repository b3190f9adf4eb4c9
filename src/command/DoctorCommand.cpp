#include "command/DoctorCommand.h"

#include "command/CommandLine.h"
#include "command/StartProgram.h"

namespace ostrelle {

ExitStatus runDoctor(const Invocation &invocation)
{
    // Also where the program runs: to ask the desktop may take a while.
    return becomeOneShot(invocation.json ? QByteArrayList{"--doctor", "--json"} : QByteArrayList{"--doctor"});
}

} // namespace ostrelle
