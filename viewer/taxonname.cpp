#include "viewer/taxonname.h"

namespace Sorvik {
namespace Viewer {

namespace {

// Rank words are short: "k", "sk", "sdv" and the like; a longer lowercase word followed by two
// underscores is part of a name.
constexpr int longestRank = 4;

bool isRankWord(const QString& raw, int length)
{
    if (length < 1 || length > longestRank)
        return false;
    for (int i = 0; i < length; ++i) {
        const QChar c = raw.at(i);
        if (c < QLatin1Char('a') || c > QLatin1Char('z'))
            return false;
    }
    return true;
}

} // namespace

int TaxonName::prefixLength(const QString& raw)
{
    // "p__Firmicutes": a rank word and two underscores.
    const int underscores = raw.indexOf(QLatin1String("__"));
    if (underscores > 0 && isRankWord(raw, underscores))
        return underscores + 2;
    // "k  Bacteria": the QIIME reader's form, a letter and two spaces.
    if (raw.size() >= 3 && isRankWord(raw, 1) && raw.at(1) == QLatin1Char(' ') && raw.at(2) == QLatin1Char(' '))
        return 3;
    // "g": QIIME's empty rank once its underscores became blanks and were trimmed.
    if (raw.size() == 1 && isRankWord(raw, 1))
        return 1;
    return 0;
}

QString TaxonName::clean(const QString& raw)
{
    QString name = raw.mid(prefixLength(raw));
    name.replace(QLatin1Char('_'), QLatin1Char(' '));
    return name.simplified();
}

bool TaxonName::isEmptyRank(const QString& raw)
{
    const int prefix = prefixLength(raw);
    return prefix > 0 && raw.mid(prefix).remove(QLatin1Char('_')).trimmed().isEmpty();
}

QString TaxonName::unclassified(const QString& parentName)
{
    return parentName.isEmpty() ? QStringLiteral("unclassified") : QStringLiteral("unclassified ") + parentName;
}

bool TaxonName::isUnassigned(const QString& cleanName)
{
    return cleanName.compare(QLatin1String("unclassified"), Qt::CaseInsensitive) == 0
           || cleanName == QLatin1String("Unknown taxon ids");
}

} // namespace Viewer
} // namespace Sorvik
