#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace Sorvik {
namespace Test {

// One row of an NCBI dump file from its fields: fields joined by TAB, bar, TAB and the row
// ended by TAB, bar, line feed.
QByteArray dumpRow(const QList<QByteArray>& fields);

struct ZipEntry
{
    QString name;
    QByteArray content;
    bool symbolicLink = false;
};

// Writes a ZIP archive holding the entries as given (names are not checked).
bool writeZip(const QString& fileName, const QList<ZipEntry>& entries);

// A small taxonomy: root 1, "cellular organisms", Bacteria, Escherichia, Escherichia coli (562)
// and Homo sapiens (9606), with a synonym and a common name that must not be used.
QByteArray smallNodes();
QByteArray smallNames();
// The small taxonomy's retired ids: 12 was merged into 562 (Escherichia coli), 99 deleted.
QByteArray smallMerged();
QByteArray smallDeleted();
// The same as a taxdmp.zip, with the retired ids when asked for.
bool writeSmallTaxdump(const QString& fileName, bool withRetired = false);

class HttpServer;

// Serves the small taxdump with its retired ids as a mirror would: whole at
// /pub/taxonomy/taxdmp.zip, cut in half at /cut.zip, and stalling after 10 bytes at /stall.zip.
// The archive is written into the folder; its bytes, or none when it could not be written.
QByteArray serveSmallTaxdump(HttpServer& server, const QString& folder);

} // namespace Test
} // namespace Sorvik
