#include "ontology/sourcemetaphlan.h"

#include "nu/linereader.h"
#include "ontology/buildersource.h"
#include "ontology/inputsample.h"
#include "ontology/nodekeys.h"
#include "ontology/pathids.h"

#include <algorithm>
#include <cmath>

namespace Zem {
namespace Ontology {

namespace {

const QString unclassifiedId = QStringLiteral("unclassified");

// Taxon ids, empty pieces for clades without one, and MetaPhlAn 4's genome bins ("SGB4933").
bool isTaxidPath(const QStringRef& text)
{
    for (const QChar c : text) {
        if (!c.isLetterOrNumber() && c != QLatin1Char('|') && c != QLatin1Char('-') && c != QLatin1Char('_'))
            return false;
    }
    return true;
}

// The last taxon id of a path: "2|1224|" gives 1224, and so does "2|1224|SGB4933", a bin
// being no taxon.
QString lastTaxid(const QStringRef& path)
{
    const QVector<QStringRef> pieces = path.split(QLatin1Char('|'));
    for (int i = pieces.size() - 1; i >= 0; --i) {
        const QStringRef piece = pieces.at(i).trimmed();
        bool number = false;
        piece.toLongLong(&number);
        if (number && !piece.startsWith(QLatin1Char('-')))
            return piece.toString();
    }
    return QString();
}

// The name without its rank prefix: "p__Firmicutes" gives Firmicutes.
QStringRef nameOf(const QStringRef& piece)
{
    const int at = piece.indexOf(QLatin1String("__"));
    return at > 0 && at <= 2 ? piece.mid(at + 2) : piece;
}

} // namespace

SourceMetaphlan::SourceMetaphlan(const QString& name, bool keep, double factor)
    : fileName(name)
    , keepUnclassified(keep)
    , multiplier(factor)
{
}

QString SourceMetaphlan::getDescription() const
{
    return fileName;
}

QString SourceMetaphlan::rankOf(const QStringRef& piece)
{
    const int at = piece.indexOf(QLatin1String("__"));
    if (at != 1)
        return QString();
    switch (piece.at(0).toLatin1()) {
    case 'd': return QStringLiteral("domain");
    case 'k': return QStringLiteral("kingdom");
    case 'p': return QStringLiteral("phylum");
    case 'c': return QStringLiteral("class");
    case 'o': return QStringLiteral("order");
    case 'f': return QStringLiteral("family");
    case 'g': return QStringLiteral("genus");
    case 's': return QStringLiteral("species");
    // MetaPhlAn 4 puts its species-level genome bins where earlier versions put strains.
    case 't': return piece.mid(3).startsWith(QLatin1String("SGB")) ? QStringLiteral("SGB") : QStringLiteral("strain");
    default: return QString();
    }
}

bool SourceMetaphlan::isUnclassified(const QStringRef& clade)
{
    return clade.trimmed().compare(QLatin1String("UNCLASSIFIED"), Qt::CaseInsensitive) == 0;
}

void SourceMetaphlan::readHeader(const QString& line, Layout& layout)
{
    const QStringList names = line.mid(1).split(QLatin1Char('\t'));
    Layout named;
    for (int i = 0; i < names.size(); ++i) {
        const QString name = names.at(i).trimmed();
        if (name == QLatin1String("clade_name"))
            named.clade = i;
        else if (name == QLatin1String("NCBI_tax_id") || name == QLatin1String("clade_taxid"))
            named.taxid = i;
        else if (name == QLatin1String("relative_abundance"))
            named.value = i;
    }
    if (named.value >= 0)
        layout = named;
}

QString SourceMetaphlan::checkClade(const QStringRef& clade)
{
    if (clade.isEmpty())
        return QStringLiteral("it names no clade");
    if (!isUnclassified(clade)) {
        for (const QStringRef& piece : clade.split(QLatin1Char('|'))) {
            if (rankOf(piece).isEmpty())
                return QStringLiteral("%1 is not a clade name with a rank prefix").arg(quoted(piece));
        }
    }
    return QString();
}

QString SourceMetaphlan::readShare(const QStringRef& text, double& value)
{
    bool ok = false;
    value = text.trimmed().toDouble(&ok);
    // Shares are percent; far larger values are no share, and could overflow the sums.
    if (!ok || !std::isfinite(value) || value < 0.0 || value > maximumShare)
        return QStringLiteral("%1 is not an abundance").arg(quoted(text));
    return QString();
}

QString SourceMetaphlan::readTaxidPath(const QStringRef& text, QString& taxid)
{
    const QStringRef ids = text.trimmed();
    if (!isTaxidPath(ids))
        return QStringLiteral("%1 is not a path of taxon ids").arg(quoted(ids));
    taxid = lastTaxid(ids);
    return QString();
}

QString SourceMetaphlan::parseRow(const QVector<QStringRef>& fields, const Layout& layout, double& value, QString& taxid)
{
    // Without a header: the name and the value, or the name, the taxon ids and the value.
    const int valueColumn = layout.value >= 0 ? layout.value : (fields.size() >= 3 ? 2 : 1);
    const int taxidColumn = layout.value >= 0 ? layout.taxid : (fields.size() >= 3 ? 1 : -1);
    if (fields.size() <= std::max({valueColumn, taxidColumn, layout.clade}))
        return QStringLiteral("it has %1 columns, not %2").arg(fields.size()).arg(valueColumn + 1);
    QString problem = checkClade(fields.at(layout.clade).trimmed());
    if (problem.isEmpty())
        problem = readShare(fields.at(valueColumn), value);
    if (problem.isEmpty() && taxidColumn >= 0)
        problem = readTaxidPath(fields.at(taxidColumn), taxid);
    return problem;
}

QString SourceMetaphlan::check(const InputSample& sample)
{
    const QStringList& lines = sample.getLines();
    Layout layout;
    int firstRow = -1;
    for (int i = 0; i < lines.size() && firstRow < 0; ++i) {
        if (lines.at(i).startsWith(QLatin1String("#clade_name")))
            readHeader(lines.at(i), layout);
        else if (!lines.at(i).trimmed().isEmpty() && !lines.at(i).startsWith(QLatin1Char('#')))
            firstRow = i;
    }
    if (firstRow < 0)
        return QStringLiteral("it has no clade rows");
    const auto row = [&layout](const QString& line) {
        if (line.startsWith(QLatin1Char('#')))
            return QString();
        double value = 0;
        QString taxid;
        return parseRow(line.splitRef(QLatin1Char('\t')), layout, value, taxid);
    };
    // A header of another kind of table is no MetaPhlAn line, even among many good ones.
    const QString first = row(lines.at(firstRow));
    if (!first.isEmpty())
        return QStringLiteral("line %1: %2").arg(firstRow + 1).arg(first);
    return sample.judge(firstRow, row);
}

void SourceMetaphlan::read(BuilderSource& builder)
{
    PathIds& paths = builder.getPathIds();
    clades.assign(1, Clade{-1, true, false, 0, 0.0});
    nu::LineReader lines(fileName);
    if (!lines.isOpen())
        return;
    builder.notifySourceTotalSize(std::max<qint64>(0, lines.getSize()));
    Layout layout;
    double unclassified = 0.0;
    while (nextLine(lines, builder)) {
        if (lines.isTooLong()) {
            skipLine(lines, tooLongReason());
            continue;
        }
        const QString& line = lines.getLine();
        if (line.startsWith(QLatin1String("#clade_name")))
            readHeader(line, layout);
        if (line.trimmed().isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const QVector<QStringRef> fields = line.splitRef(QLatin1Char('\t'));
        double value = 0.0;
        QString taxid;
        const QString problem = parseRow(fields, layout, value, taxid);
        if (!problem.isEmpty()) {
            skipLine(lines, problem);
            continue;
        }
        const QStringRef clade = fields.at(layout.clade).trimmed();
        if (isUnclassified(clade)) {
            unclassified = std::min(unclassified + value, maximumShare);
            continue;
        }
        const QString given = addClade(builder, paths, clade, value, taxid, lines.getLineNumber());
        if (!given.isEmpty())
            skipLine(lines, given);
    }
    writeCounts(builder, paths, keepUnclassified ? unclassified : 0.0);
}

QString SourceMetaphlan::addClade(BuilderSource& builder, PathIds& paths, const QStringRef& clade, double value,
                                  const QString& taxid, qint64 line)
{
    int node = PathIds::root;
    for (const QStringRef& piece : clade.split(QLatin1Char('|'))) {
        const int parent = node;
        node = paths.child(parent, QStringView(piece.constData(), piece.size()));
        if (size_t(node) >= clades.size())
            clades.resize(size_t(paths.size()));
        Clade& level = clades[size_t(node)];
        if (level.used)
            continue;
        level.used = true;
        level.parent = parent;
        const QString id = paths.getId(node);
        builder.addData(id, NodeKey::name, nameOf(piece).toString());
        builder.addData(id, NodeKey::rank, rankOf(piece));
    }
    Clade& given = clades[size_t(node)];
    if (given.given)
        return QStringLiteral("the clade was given on line %1 already").arg(given.line);
    given.given = true;
    given.line = line;
    given.value = value;
    if (!taxid.isEmpty())
        builder.addData(paths.getId(node), NodeKey::taxid, taxid);
    return QString();
}

void SourceMetaphlan::writeCounts(BuilderSource& builder, PathIds& paths, double unclassified)
{
    // Counts in parts of the multiplier, rounded once per clade, so that every clade's total
    // comes out as its own value and rounding never adds up along a path. A child always comes
    // after its parent, so going backwards meets every child before its parent.
    std::vector<qint64> childSum(clades.size(), 0);
    for (size_t i = clades.size() - 1; i > 0; --i) {
        const Clade& clade = clades[i];
        if (!clade.used)
            continue;
        const qint64 total = clade.given ? std::llround(clade.value * multiplier) : childSum[i];
        paths.addCount(int(i), std::max<qint64>(0, total - childSum[i]));
        childSum[size_t(clade.parent)] = addCounts(childSum[size_t(clade.parent)], total);
    }
    paths.writeCounts();
    const qint64 unclassifiedCount = std::llround(unclassified * multiplier);
    if (unclassifiedCount > 0) {
        builder.addData(unclassifiedId, NodeKey::name, unclassifiedId);
        builder.addData(unclassifiedId, NodeKey::count, QString::number(unclassifiedCount));
        builder.addChild(builder.getRoot(), builder.getNode(unclassifiedId));
    }
}

} // namespace Ontology
} // namespace Zem
