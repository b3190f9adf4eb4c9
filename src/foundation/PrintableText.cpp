#include "foundation/PrintableText.h"

namespace ostrelle {

QString printable(const QString &text)
{
    QString result = text;
    for (QChar &character : result) {
        if (character.category() == QChar::Other_Control || character.category() == QChar::Other_Format)
            character = QLatin1Char(' ');
    }
    return result;
}

} // namespace ostrelle
