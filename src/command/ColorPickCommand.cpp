#include "command/ColorPickCommand.h"

#include "command/CommandLine.h"
#include "command/ControlClient.h"
#include "command/Output.h"
#include "command/StartProgram.h"
#include "command/StoreSteps.h"
#include "records/ColorFormat.h"

namespace ostrelle {

ExitStatus runColorPick(const Invocation &invocation)
{
    const QString name = invocation.options.value(QStringLiteral("--format"), QStringLiteral("hex"));
    const auto format = colorFormatFromName(name);
    if (!format)
        return fail(ExitStatus::WrongUsage,
                    QStringLiteral("color pick: the format is hex, rgb, hsl or json, not %1").arg(printable(name)));
    auto client = ControlClient::connect();
    if (!client)
        return becomeOneShot({"--pick-color=" + name.toUtf8()});
    const ControlAnswer answer = client->ask(QStringLiteral("color.pick"), {}, ControlClient::Patience::ForTheUser);
    if (answer.status != ExitStatus::Done)
        return reported(answer);
    const auto color = SampledColor::fromJson(answer.result.toObject());
    if (!color)
        return fail(ExitStatus::Failed, QStringLiteral("color pick: the running program tells no color"));
    printOut(colorText(*color, *format) + QLatin1Char('\n'));
    return ExitStatus::Done;
}

} // namespace ostrelle
