#include "ontology/sourcekrakenreads.h"

#include "nu/linereader.h"
#include "ontology/buildersource.h"
#include "ontology/inputsample.h"
#include "ontology/nodekeys.h"

#include <cstring>
#include <vector>

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

// Reads per taxon id: few ids, met millions of times, so an open-addressing table of plain
// numbers (id + 1 as the key, 0 marking an empty slot).
class Tally
{
public:
    Tally()
        : table(1024, {0, 0})
    {
    }
    void add(quint64 taxid)
    {
        const quint64 key = taxid + 1;
        size_t mask = table.size() - 1;
        size_t at = size_t((key * 0x9e3779b97f4a7c15ull) >> 20) & mask;
        while (table[at].first != key) {
            if (table[at].first == 0) {
                if (++used * 2 > table.size()) {
                    grow();
                    add(taxid);
                    return;
                }
                table[at].first = key;
                break;
            }
            at = (at + 1) & mask;
        }
        ++table[at].second;
    }
    template <typename Visit>
    void forEach(Visit visit) const
    {
        for (const auto& [key, count] : table) {
            if (key != 0)
                visit(key - 1, count);
        }
    }

private:
    void grow()
    {
        std::vector<std::pair<quint64, qint64>> old(table.size() * 2, {0, 0});
        old.swap(table);
        used = 0;
        const size_t mask = table.size() - 1;
        for (const auto& [key, count] : old) {
            if (key == 0)
                continue;
            size_t at = size_t((key * 0x9e3779b97f4a7c15ull) >> 20) & mask;
            while (table[at].first != 0)
                at = (at + 1) & mask;
            table[at] = {key, count};
            ++used;
        }
    }

    std::vector<std::pair<quint64, qint64>> table;
    size_t used = 0;
};

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

SourceKrakenReads::Kind SourceKrakenReads::parse(std::string_view line, quint64& taxid, QString* problem)
{
    const auto malformed = [problem](const QString& reason) {
        if (problem)
            *problem = reason;
        return Kind::Malformed;
    };
    if (line.size() < 2 || (line[0] != 'C' && line[0] != 'U') || line[1] != '\t')
        return malformed(QStringLiteral("it does not start with C or U and a TAB"));
    const char* data = line.data();
    const auto* idEnd = static_cast<const char*>(std::memchr(data + 2, '\t', line.size() - 2));
    if (!idEnd)
        return malformed(QStringLiteral("it has no taxon id column"));
    const size_t from = size_t(idEnd - data) + 1;
    const auto* taxidEnd = static_cast<const char*>(std::memchr(data + from, '\t', line.size() - from));
    const std::string_view field = line.substr(from, (taxidEnd ? size_t(taxidEnd - data) : line.size()) - from);
    if (!readTaxid(field, taxid))
        return malformed(QStringLiteral("%1 is not a taxon id").arg(shown(field)));
    return line[0] == 'U' || taxid == 0 ? Kind::Unclassified : Kind::Classified;
}

QString SourceKrakenReads::check(const InputSample& sample)
{
    return sample.judge(0, [](const QString& line) {
        const QByteArray bytes = line.toUtf8();
        quint64 taxid = 0;
        QString problem;
        parse(std::string_view(bytes.constData(), size_t(bytes.size())), taxid, &problem);
        return problem;
    });
}

void SourceKrakenReads::read(BuilderSource& builder)
{
    nu::LineReader lines(fileName);
    if (!lines.isOpen())
        return;
    builder.notifySourceTotalSize(std::max<qint64>(0, lines.getSize()));
    Tally counts;
    qint64 unclassified = 0;
    while (nextLine(lines, builder)) {
        if (lines.isTooLong()) {
            skipLine(lines, tooLongReason());
            continue;
        }
        const std::string_view line = lines.getBytes();
        quint64 taxid = 0;
        const Kind kind = parse(line, taxid);
        if (kind == Kind::Classified) {
            counts.add(taxid);
        } else if (kind == Kind::Unclassified) {
            ++unclassified;
        } else if (line.find_first_not_of(" \t") != std::string_view::npos) {
            QString problem;
            parse(line, taxid, &problem);
            skipLine(lines, problem);
        }
    }
    counts.forEach([&builder](quint64 taxid, qint64 reads) {
        builder.addData(QString::number(taxid), NodeKey::count, QString::number(reads));
    });
    if (keepUnclassified && unclassified > 0) {
        builder.addData(unclassifiedId, NodeKey::name, unclassifiedId);
        builder.addData(unclassifiedId, NodeKey::count, QString::number(unclassified));
    }
}

} // namespace Ontology
} // namespace Zem
