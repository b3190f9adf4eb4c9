#include "ShellWords.h"

#include "CompletionPlaces.h"

namespace ostrelle {

QString inQuotes(const QString &text)
{
    return u'\'' + QString(text).replace(u'\'', QStringLiteral("'\\''")) + u'\'';
}

QString alternatives(const QStringList &texts)
{
    QStringList quoted;
    for (const QString &text : texts)
        quoted.append(inQuotes(text));
    return quoted.join(u'|');
}

QString casePattern(const CompletionPlace &place)
{
    if (place.isRepeated)
        return inQuotes(place.command + u':') + QStringLiteral("[%1-9]*").arg(place.place);
    const QString at = place.command + u':' + place.place + u':';
    return place.after.isEmpty() ? inQuotes(at) + u'*' : inQuotes(at + place.after);
}

QString placeFinder(const QString &words, const QString &begin, const QString &end)
{
    return QStringLiteral(R"(  local name= first= place= word
  local -i at=%2 count=0
  while (( at < %3 )); do
    word=${%1[at]}
    (( at += 1 ))
    if [[ -n $place ]]; then
      place=
      continue
    fi
    if [[ $word == -* ]]; then
      case "$name $word" in
        %4) place=$word ;;
      esac
      continue
    fi
    case $name in
      '') name=$word ;;
      %5) name="$name $word" ;;
      *)
        (( count += 1 ))
        [[ $count == 1 ]] && first=$word
        ;;
    esac
  done
  if [[ -z $place && ${%1[%3]} == -* ]]; then
    place=options
  elif [[ -z $place ]]; then
    place=$(( count + 1 ))
  fi
)")
        .arg(words, begin, end, alternatives(optionsWithValue()), alternatives(commandGroups()));
}

} // namespace ostrelle
