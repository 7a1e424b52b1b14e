#include "tests/support/taxdump.h"

#include "tests/support/fixtures.h"
#include "tests/support/httpserver.h"

#include <QDir>

#include <quazip/quazip.h>
#include <quazip/quazipfile.h>
#include <quazip/quazipnewinfo.h>

namespace Sorvik {
namespace Test {

QByteArray dumpRow(const QList<QByteArray>& fields)
{
    QByteArray row;
    for (const QByteArray& field : fields)
        row.append(field).append("\t|\t");
    row.chop(1);
    row.append('\n');
    return row;
}

bool writeZip(const QString& fileName, const QList<ZipEntry>& entries)
{
    QuaZip zip(fileName);
    if (!zip.open(QuaZip::mdCreate))
        return false;
    for (const ZipEntry& entry : entries) {
        QuaZipFile out(&zip);
        QuaZipNewInfo info(entry.name);
        if (entry.symbolicLink)
            info.externalAttr = 0120777u << 16;
        if (!out.open(QIODevice::WriteOnly, info) || out.write(entry.content) != entry.content.size())
            return false;
        out.close();
    }
    zip.close();
    return zip.getZipError() == 0;
}

QByteArray smallNodes()
{
    return dumpRow({"1", "1", "no rank", "", "8"}) + dumpRow({"131567", "1", "no rank", "", "8"})
        + dumpRow({"2", "131567", "superkingdom", "", "0"}) + dumpRow({"562", "561", "species", "EC", "0"})
        + dumpRow({"561", "2", "genus", "", "0"}) + dumpRow({"9606", "131567", "species", "HS", "5"});
}

QByteArray smallNames()
{
    return dumpRow({"1", "root", "", "scientific name"}) + dumpRow({"131567", "cellular organisms", "", "scientific name"})
        + dumpRow({"2", "Bacteria", "Bacteria <bacteria>", "scientific name"})
        + dumpRow({"2", "eubacteria", "", "genbank common name"}) + dumpRow({"561", "Escherichia", "", "scientific name"})
        + dumpRow({"562", "Escherichia coli", "", "scientific name"}) + dumpRow({"562", "Bacterium coli", "", "synonym"})
        + dumpRow({"9606", "Homo sapiens", "", "scientific name"}) + dumpRow({"9606", "human", "", "genbank common name"});
}

QByteArray smallMerged()
{
    return dumpRow({"12", "562"});
}

QByteArray smallDeleted()
{
    return dumpRow({"99"});
}

bool writeSmallTaxdump(const QString& fileName, bool withRetired)
{
    QList<ZipEntry> entries{{QStringLiteral("nodes.dmp"), smallNodes()}, {QStringLiteral("names.dmp"), smallNames()}};
    if (withRetired)
        entries << ZipEntry{QStringLiteral("merged.dmp"), smallMerged()} << ZipEntry{QStringLiteral("delnodes.dmp"), smallDeleted()};
    return writeZip(fileName, entries);
}

QByteArray serveSmallTaxdump(HttpServer& server, const QString& folder)
{
    const QString small = QDir(folder).filePath(QStringLiteral("small.zip"));
    if (!writeSmallTaxdump(small, true))
        return QByteArray();
    const QByteArray archive = fileContents(small);
    server.serve(QStringLiteral("/pub/taxonomy/taxdmp.zip"), archive);
    server.serve(QStringLiteral("/cut.zip"), archive.left(archive.size() / 2));
    HttpServer::Route stall;
    stall.behaviour = HttpServer::Behaviour::Stall;
    stall.body = archive;
    stall.stallAfter = 10;
    server.setRoute(QStringLiteral("/stall.zip"), stall);
    return archive;
}

} // namespace Test
} // namespace Sorvik
