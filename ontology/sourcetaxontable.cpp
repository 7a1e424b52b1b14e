#include "ontology/sourcetaxontable.h"

#include "nu/linereader.h"
#include "ontology/buildersource.h"
#include "ontology/inputsample.h"
#include "ontology/nodekeys.h"

#include <QStringRef>
#include <QVector>

namespace Zem {
namespace Ontology {

namespace {

const QString unclassifiedId = QStringLiteral("unclassified");
// The NCBI taxonomy's root.
const QString rootTaxid = QStringLiteral("1");

bool isTaxid(const QStringRef& text)
{
    if (text.isEmpty())
        return false;
    for (const QChar c : text) {
        if (!c.isDigit())
            return false;
    }
    return true;
}

} // namespace

SourceTaxonTable::SourceTaxonTable(const QString& name, const Columns& names, bool keep)
    : fileName(name)
    , columns(names)
    , keepUnclassified(keep)
{
}

QString SourceTaxonTable::getDescription() const
{
    return fileName;
}

bool SourceTaxonTable::readHeader(const QString& line, const Columns& names, Places& places)
{
    const QStringList header = line.split(QLatin1Char('\t'));
    for (int i = 0; i < header.size(); ++i) {
        const QString name = header.at(i).trimmed();
        if (name == names.taxid)
            places.taxid = i;
        else if (name == names.count)
            places.count = i;
        else if (name == names.name)
            places.name = i;
    }
    return places.taxid >= 0 && places.count >= 0;
}

QString SourceTaxonTable::readRow(const QString& line, const Places& places, QString& id, qint64& count)
{
    const QVector<QStringRef> fields = line.splitRef(QLatin1Char('\t'));
    if (fields.size() <= std::max(places.taxid, places.count))
        return QStringLiteral("it has %1 columns").arg(fields.size());
    const QString problem = readCount(fields.at(places.count), count);
    return problem.isEmpty() ? readId(fields, places, id) : problem;
}

QString SourceTaxonTable::readId(const QVector<QStringRef>& fields, const Places& places, QString& id)
{
    const QStringRef taxid = fields.at(places.taxid).trimmed();
    if (isTaxid(taxid)) {
        id = taxid.toLong() == 0 ? unclassifiedId : taxid.toString();
        return QString();
    }
    // Tables write "NA" where a row has no taxon.
    if (taxid.compare(QLatin1String("NA"), Qt::CaseInsensitive) != 0 && !taxid.isEmpty())
        return QStringLiteral("%1 is not a taxon id").arg(quoted(taxid));
    const QStringRef name = places.name >= 0 && places.name < fields.size() ? fields.at(places.name).trimmed() : QStringRef();
    id = name.compare(unclassifiedId, Qt::CaseInsensitive) == 0 ? unclassifiedId : rootTaxid;
    return QString();
}

QString SourceTaxonTable::check(const InputSample& sample, const Columns& names)
{
    const QStringList& lines = sample.getLines();
    int header = 0;
    while (header < lines.size() && InputSample::isBlankOrComment(lines.at(header)))
        ++header;
    Places places;
    if (header >= lines.size() || !readHeader(lines.at(header), names, places))
        return QStringLiteral("line %1: it is no header with the columns %2 and %3")
            .arg(header + 1)
            .arg(names.taxid, names.count);
    return sample.judge(header + 1, [&places](const QString& line) {
        QString id;
        qint64 count = 0;
        return line.startsWith(QLatin1Char('#')) ? QString() : readRow(line, places, id, count);
    });
}

void SourceTaxonTable::read(BuilderSource& builder)
{
    nu::LineReader lines(fileName);
    if (!lines.isOpen())
        return;
    builder.notifySourceTotalSize(std::max<qint64>(0, lines.getSize()));
    Places places;
    bool headerRead = false;
    QHash<QString, qint64> counts;
    while (nextLine(lines, builder)) {
        if (lines.isTooLong()) {
            skipLine(lines, tooLongReason());
            continue;
        }
        const QString& line = lines.getLine();
        if (InputSample::isBlankOrComment(line))
            continue;
        if (!headerRead) {
            headerRead = true;
            if (!readHeader(line, columns, places)) {
                skipLine(lines, QStringLiteral("it is no header with the columns %1 and %2").arg(columns.taxid, columns.count));
                return;
            }
            continue;
        }
        QString id;
        qint64 count = 0;
        const QString problem = readRow(line, places, id, count);
        if (!problem.isEmpty()) {
            skipLine(lines, problem);
            continue;
        }
        qint64& sum = counts[id];
        sum = addCounts(sum, count);
    }
    writeCounts(builder, counts);
}

void SourceTaxonTable::writeCounts(BuilderSource& builder, QHash<QString, qint64>& counts) const
{
    if (!keepUnclassified)
        counts.remove(unclassifiedId);
    else if (counts.contains(unclassifiedId))
        builder.addData(unclassifiedId, NodeKey::name, unclassifiedId);
    for (auto it = counts.constBegin(); it != counts.constEnd(); ++it)
        builder.addData(it.key(), NodeKey::count, QString::number(it.value()));
}

} // namespace Ontology
} // namespace Zem
