// Writes the documents that are made from the table of commands: ostrelle-documents man DATE | bash | zsh | fish
#include "ManualPage.h"
#include "ShellCompletions.h"

#include <QByteArray>
#include <QDate>
#include <QString>

#include <cstdio>

namespace {

QString document(const QByteArray &kind, const char *date)
{
    using namespace ostrelle;
    if (kind == "man")
        return manualPage(QDate::fromString(QString::fromLatin1(date), Qt::ISODate));
    if (kind == "bash")
        return bashCompletion();
    if (kind == "zsh")
        return zshCompletion();
    return kind == "fish" ? fishCompletion() : QString();
}

} // namespace

int main(int argc, char **argv)
{
    const QByteArray text = document(argc > 1 ? argv[1] : "", argc > 2 ? argv[2] : "").toUtf8();
    if (text.isEmpty()) {
        std::fputs("usage: ostrelle-documents man DATE | bash | zsh | fish\n", stderr);
        return 2;
    }
    return std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout) ==
                   static_cast<std::size_t>(text.size())
               ? 0
               : 1;
}
