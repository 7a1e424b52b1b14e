#include "ontology/sourcekrakenreads.h"

#include "nu/linereader.h"
#include "ontology/buildersource.h"
#include "ontology/inputsample.h"
#include "ontology/nodekeys.h"

#include <QHash>

#include <cstring>

namespace Zem {
namespace Ontology {

namespace {

const QString unclassifiedId = QStringLiteral("unclassified");

// Larger ids than any taxonomy has are no ids, and this keeps the sum from overflowing.
constexpr quint64 largestTaxid = quint64(1) << 62;

// The decimal number that text is exactly, if it is one.
bool readNumber(std::string_view text, quint64& number)
{
    if (text.empty() || text.size() > 18)
        return false;
    number = 0;
    for (const char c : text) {
        if (c < '0' || c > '9')
            return false;
        number = number * 10 + quint64(c - '0');
    }
    return number < largestTaxid;
}

// The taxon id of the third column: a number, or with --use-names the N of "Name (taxid N)".
bool readTaxid(std::string_view field, quint64& taxid)
{
    if (!field.empty() && field.back() == ')') {
        const size_t open = field.rfind("(taxid ");
        if (open == std::string_view::npos)
            return false;
        field = field.substr(open + 7, field.size() - open - 8);
    }
    return readNumber(field, taxid);
}

QString shown(std::string_view text)
{
    const QString whole = QString::fromUtf8(text.data(), int(std::min<size_t>(text.size(), 64)));
    return QLatin1Char('\'') + (whole.size() > 40 ? whole.left(40) + QStringLiteral("...") : whole) + QLatin1Char('\'');
}

} // namespace

SourceKrakenReads::SourceKrakenReads(const QString& name, bool keep)
    : fileName(name)
    , keepUnclassified(keep)
{
}

QString SourceKrakenReads::getDescription() const
{
    return fileName;
}

SourceKrakenReads::Read SourceKrakenReads::parse(std::string_view line)
{
    Read read;
    if (line.size() < 2 || (line[0] != 'C' && line[0] != 'U') || line[1] != '\t') {
        read.problem = QStringLiteral("it does not start with C or U and a TAB");
        return read;
    }
    const char* data = line.data();
    const auto* idEnd = static_cast<const char*>(std::memchr(data + 2, '\t', line.size() - 2));
    if (!idEnd) {
        read.problem = QStringLiteral("it has no taxon id column");
        return read;
    }
    const size_t from = size_t(idEnd - data) + 1;
    const auto* taxidEnd = static_cast<const char*>(std::memchr(data + from, '\t', line.size() - from));
    const std::string_view field = line.substr(from, (taxidEnd ? size_t(taxidEnd - data) : line.size()) - from);
    if (!readTaxid(field, read.taxid)) {
        read.problem = QStringLiteral("%1 is not a taxon id").arg(shown(field));
        return read;
    }
    read.kind = line[0] == 'U' || read.taxid == 0 ? Kind::Unclassified : Kind::Classified;
    return read;
}

QString SourceKrakenReads::check(const InputSample& sample)
{
    return sample.judge(0, [](const QString& line) {
        const QByteArray bytes = line.toUtf8();
        return parse(std::string_view(bytes.constData(), size_t(bytes.size()))).problem;
    });
}

void SourceKrakenReads::read(BuilderSource& builder)
{
    nu::LineReader lines(fileName);
    if (!lines.isOpen())
        return;
    builder.notifySourceTotalSize(std::max<qint64>(0, lines.getSize()));
    QHash<quint64, qint64> counts;
    qint64 unclassified = 0;
    while (nextLine(lines, builder)) {
        if (lines.isTooLong()) {
            skipLine(lines, tooLongReason());
            continue;
        }
        const std::string_view line = lines.getBytes();
        if (line.find_first_not_of(" \t") == std::string_view::npos)
            continue;
        const Read read = parse(line);
        if (read.kind == Kind::Classified)
            ++counts[read.taxid];
        else if (read.kind == Kind::Unclassified)
            ++unclassified;
        else
            skipLine(lines, read.problem);
    }
    for (auto it = counts.constBegin(); it != counts.constEnd(); ++it)
        builder.addData(QString::number(it.key()), NodeKey::count, QString::number(it.value()));
    if (keepUnclassified && unclassified > 0) {
        builder.addData(unclassifiedId, NodeKey::name, unclassifiedId);
        builder.addData(unclassifiedId, NodeKey::count, QString::number(unclassified));
    }
}

} // namespace Ontology
} // namespace Zem
