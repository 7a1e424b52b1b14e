#include "ontology/sourcekreport.h"

#include "nu/linereader.h"
#include "ontology/buildersource.h"
#include "ontology/buildreport.h"
#include "ontology/inputsample.h"
#include "ontology/nodekeys.h"

#include <QSet>

#include <algorithm>

namespace Zem {
namespace Ontology {

namespace {

const QString unclassifiedId = QStringLiteral("unclassified");
const QString rootId = QStringLiteral("root");

bool isComment(const QString& line)
{
    return line.startsWith(QLatin1Char('#'));
}

// The name's indentation gives its depth: two spaces a level.
int indentation(const QStringRef& name)
{
    int spaces = 0;
    while (spaces < name.size() && name.at(spaces) == QLatin1Char(' '))
        ++spaces;
    return spaces / 2;
}

} // namespace

SourceKreport::SourceKreport(const QString& name, bool keep)
    : fileName(name)
    , keepUnclassified(keep)
{
}

QString SourceKreport::getDescription() const
{
    return fileName;
}

bool SourceKreport::readHeader(const QString& line, Layout& layout)
{
    // The names each member of the family gives its columns.
    static const QHash<QString, int Layout::*> roles{
        {QStringLiteral("reads"), &Layout::clade},       {QStringLiteral("n-clade"), &Layout::clade},
        {QStringLiteral("clades"), &Layout::clade},      {QStringLiteral("taxreads"), &Layout::own},
        {QStringLiteral("n-stay"), &Layout::own},        {QStringLiteral("taxonomies"), &Layout::own},
        {QStringLiteral("rank"), &Layout::rank},         {QStringLiteral("taxid"), &Layout::taxid},
        {QStringLiteral("taxonid"), &Layout::taxid},     {QStringLiteral("taxonomy id"), &Layout::taxid},
        {QStringLiteral("depth"), &Layout::depth},       {QStringLiteral("taxname"), &Layout::name},
        {QStringLiteral("name"), &Layout::name},         {QStringLiteral("scientific name"), &Layout::name},
    };
    const QStringList names = line.split(QLatin1Char('\t'));
    Layout named;
    named.clade = named.own = -1;
    for (int i = 0; i < names.size(); ++i) {
        const auto role = roles.constFind(names.at(i).trimmed().toLower());
        if (role != roles.constEnd())
            named.*role.value() = i;
    }
    if (named.clade < 0 || named.own < 0 || named.taxid < 0 || named.name < 0)
        return false;
    named.columns = names.size();
    layout = named;
    return true;
}

QString SourceKreport::parseRow(const QVector<QStringRef>& fields, const Layout& layout, Row& row)
{
    const int n = fields.size();
    if (n < layout.columns) {
        return QStringLiteral("it has %1 columns, not %2%3")
            .arg(n)
            .arg(layout.columns)
            .arg(layout.name < 0 ? QStringLiteral(" or more") : QString());
    }
    QString problem = readCount(fields.at(layout.clade), row.clade);
    if (problem.isEmpty())
        problem = readCount(fields.at(layout.own), row.own);
    if (!problem.isEmpty())
        return problem;
    const QStringRef name = fields.at(layout.name < 0 ? n - 1 : layout.name);
    row.taxid = fields.at(layout.taxid < 0 ? n - 2 : layout.taxid).trimmed().toString();
    if (row.taxid.isEmpty())
        return QStringLiteral("it has no taxon id");
    const int rankColumn = layout.rank >= 0 ? layout.rank : (layout.taxid < 0 ? n - 3 : -1);
    row.rank = rankColumn >= 0 ? fields.at(rankColumn).trimmed().toString() : QString();
    row.name = name.trimmed().toString();
    if (layout.depth < 0) {
        row.depth = indentation(name);
    } else {
        bool ok = false;
        row.depth = fields.at(layout.depth).trimmed().toInt(&ok);
        if (!ok || row.depth < 0)
            return QStringLiteral("%1 is not a depth").arg(quoted(fields.at(layout.depth)));
    }
    return QString();
}

QString SourceKreport::check(const InputSample& sample)
{
    const QStringList& lines = sample.getLines();
    int first = 0;
    while (first < lines.size() && (lines.at(first).trimmed().isEmpty() || isComment(lines.at(first))))
        ++first;
    Layout layout;
    if (first < lines.size() && readHeader(lines.at(first), layout))
        ++first;
    return sample.judge(first, [&layout](const QString& line) {
        if (isComment(line))
            return QString();
        const QVector<QStringRef> fields = line.splitRef(QLatin1Char('\t'));
        if (fields.size() < layout.columns)
            return QStringLiteral("it has %1 columns").arg(fields.size());
        // Without a header the first column is the clade's share in percent.
        bool ok = true;
        if (layout.name < 0)
            fields.at(0).trimmed().toDouble(&ok);
        if (!ok)
            return QStringLiteral("%1 is not a percentage").arg(InputSample::quote(fields.at(0).toString()));
        Row row;
        return parseRow(fields, layout, row);
    });
}

void SourceKreport::read(BuilderSource& builder)
{
    nu::LineReader lines(fileName);
    if (!lines.isOpen()) {
        builder.addRoot(rootId);
        return;
    }
    builder.notifySourceTotalSize(std::max<qint64>(0, lines.getSize()));
    Layout layout;
    bool headerPossible = true;
    std::vector<Row> rows;
    qint64 unclassified = 0;
    while (nextLine(lines, builder)) {
        if (lines.isTooLong()) {
            skipLine(lines, tooLongReason());
            continue;
        }
        const QString& line = lines.getLine();
        if (line.trimmed().isEmpty() || isComment(line))
            continue;
        if (headerPossible) {
            headerPossible = false;
            if (readHeader(line, layout))
                continue;
        }
        Row row;
        const QString problem = parseRow(line.splitRef(QLatin1Char('\t')), layout, row);
        if (!problem.isEmpty()) {
            skipLine(lines, problem);
            continue;
        }
        row.line = lines.getLineNumber();
        // Unclassified reads have no place in the tree; they go beside it, under the root.
        if (row.taxid == QLatin1String("0"))
            unclassified = addCounts(unclassified, row.clade);
        else
            rows.push_back(std::move(row));
    }
    buildTree(builder, rows, keepUnclassified ? unclassified : 0);
}

void SourceKreport::buildTree(BuilderSource& builder, const std::vector<Row>& rows, qint64 unclassified)
{
    // Each row's parent is the nearest row above it that is less deep, however far the
    // indentation steps back.
    std::vector<int> parents(rows.size(), -1);
    std::vector<int> open;
    std::vector<int> topLevel;
    for (int i = 0; i < int(rows.size()); ++i) {
        while (!open.empty() && rows[size_t(open.back())].depth >= rows[size_t(i)].depth)
            open.pop_back();
        parents[size_t(i)] = open.empty() ? -1 : open.back();
        if (open.empty())
            topLevel.push_back(i);
        open.push_back(i);
    }

    // Ids are the report's taxon ids; a repeated one gets the row's line instead, so that no
    // taxon ends up under two parents.
    QSet<QString> used{unclassifiedId, rootId};
    std::vector<Builder::Node*> nodes(rows.size());
    for (size_t i = 0; i < rows.size(); ++i) {
        const Row& row = rows[i];
        QString id = row.taxid;
        if (used.contains(id))
            id = QStringLiteral("line%1").arg(row.line);
        used.insert(id);
        nodes[i] = builder.getNode(id);
        nodes[i]->data.insert(NodeKey::name, row.name);
        nodes[i]->data.insert(NodeKey::taxid, row.taxid);
        if (!row.rank.isEmpty())
            nodes[i]->data.insert(NodeKey::rank, row.rank);
    }

    // One top row (the report's root) is the chart's root; several, or none, share one made here.
    Builder::Node* root = nullptr;
    if (topLevel.size() == 1) {
        root = nodes[size_t(topLevel.front())];
        builder.addChild(root, root);
    } else {
        builder.addRoot(rootId);
        root = builder.getRoot();
        root->data.insert(NodeKey::name, rootId);
    }
    if (unclassified > 0) {
        Builder::Node* node = builder.getNode(unclassifiedId);
        node->data.insert(NodeKey::name, unclassifiedId);
        node->data.insert(NodeKey::count, QString::number(unclassified));
        builder.addChild(root, node);
    }
    for (size_t i = 0; i < rows.size(); ++i) {
        const int parent = parents[i];
        if (parent >= 0 || nodes[i] != root)
            builder.addChild(parent >= 0 ? nodes[size_t(parent)] : root, nodes[i]);
    }

    // The clade column is the truth: a node's own count is what its clade holds beyond its
    // children's clades, so every node's total comes out as its row's clade reads even where
    // rows were cut or filtered away.
    std::vector<qint64> childClade(rows.size(), 0);
    for (size_t i = 0; i < rows.size(); ++i) {
        if (parents[i] >= 0)
            childClade[size_t(parents[i])] = addCounts(childClade[size_t(parents[i])], rows[i].clade);
    }
    for (size_t i = 0; i < rows.size(); ++i) {
        const qint64 own = std::max<qint64>(0, rows[i].clade - childClade[i]);
        nodes[i]->data.insert(NodeKey::count, QString::number(own));
    }
    warnOfDisagreement(rows, childClade);
}

void SourceKreport::warnOfDisagreement(const std::vector<Row>& rows, const std::vector<qint64>& childClade)
{
    qint64 disagreeing = 0;
    size_t first = 0;
    for (size_t i = 0; i < rows.size(); ++i) {
        if (addCounts(rows[i].own, childClade[i]) != rows[i].clade && disagreeing++ == 0)
            first = i;
    }
    if (disagreeing == 0)
        return;
    const Row& row = rows[first];
    warn(QStringLiteral("%1 of %2 rows disagree with the rows below them, as in a cut or filtered report; the "
                        "chart follows their clade reads (first: line %3: %4 has %5 clade reads, but its own and "
                        "its children's add up to %6)")
             .arg(BuildReport::formatCount(disagreeing), BuildReport::formatCount(qint64(rows.size())))
             .arg(row.line)
             .arg(quoted(row.name), BuildReport::formatCount(row.clade),
                  BuildReport::formatCount(addCounts(row.own, childClade[first]))));
}

} // namespace Ontology
} // namespace Zem
