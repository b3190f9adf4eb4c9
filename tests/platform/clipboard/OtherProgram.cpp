#include "OtherProgram.h"

#include <QFileInfo>
#include <QTest>

namespace ostrelle {

namespace {

constexpr int kPatience = 20'000; // ms; a loaded machine starts programs slowly

QString executableOf(const QString &program)
{
    const QString peer = QStringLiteral(OSTRELLE_PEERS "/") + program;
    return QFileInfo::exists(peer) ? peer : program;
}

} // namespace

OtherProgram::OtherProgram(const QString &program, const QStringList &arguments, const QByteArray &input)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(executableOf(program), arguments);
    m_process.write(input);
    m_process.closeWriteChannel();
}

OtherProgram::~OtherProgram()
{
    end();
}

bool OtherProgram::says(const QByteArray &line)
{
    return QTest::qWaitFor([&] { return hasSaid(line); }, kPatience);
}

bool OtherProgram::hasSaid(const QByteArray &line)
{
    while (m_process.canReadLine()) {
        if (m_process.readLine().trimmed() == line) {
            return true;
        }
    }
    return false;
}

bool OtherProgram::succeeds()
{
    return QTest::qWaitFor([this] { return m_process.state() == QProcess::NotRunning; }, kPatience) &&
           m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
}

QByteArray OtherProgram::output()
{
    return succeeds() ? m_process.readAllStandardOutput() : QByteArray();
}

void OtherProgram::end()
{
    m_process.kill();
    m_process.waitForFinished();
}

OtherProgram copyElsewhere(const QString &text)
{
    return OtherProgram(QStringLiteral("selection-owner"), {QStringLiteral("serve"), QStringLiteral("--text"), text});
}

} // namespace ostrelle
