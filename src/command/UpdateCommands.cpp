#include "command/UpdateCommands.h"

#include "command/CommandLine.h"
#include "command/ControlClient.h"
#include "command/Output.h"
#include "command/StartProgram.h"
#include "records/UpdateReport.h"

namespace ostrelle {

ExitStatus runUpdateCheck(const Invocation &invocation)
{
    auto client = ControlClient::connect();
    if (!client)
        return becomeOneShot(invocation.json ? QByteArrayList{"--check-update", "--json"}
                                             : QByteArrayList{"--check-update"});
    const ControlAnswer answer = client->ask(QStringLiteral("update.check"));
    if (answer.status != ExitStatus::Done)
        return fail(answer.status, answer.error);
    const UpdateReport report = UpdateReport::fromJson(answer.result.toObject());
    if (invocation.json)
        printOut(compactJson(report.toJson()) + QLatin1Char('\n'));
    else if (report.isFailure())
        return fail(ExitStatus::Failed, report.text());
    else
        printOut(report.text());
    return report.isFailure() ? ExitStatus::Failed : ExitStatus::Done;
}

} // namespace ostrelle
