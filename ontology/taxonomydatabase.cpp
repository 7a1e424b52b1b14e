#include "ontology/taxonomydatabase.h"

#include "ontology/nodekeys.h"
#include "ontology/sourcebcp.h"

#include <QFile>
#include <QTemporaryDir>

#include <quazip/quazip.h>
#include <quazip/quazipfile.h>
#include <quazip/quazipfileinfo.h>

namespace Zem {
namespace Ncbi {

const QString TaxonomyDatabase::nodesFileName = QStringLiteral("nodes.dmp");
const QString TaxonomyDatabase::namesFileName = QStringLiteral("names.dmp");

const char* TaxonomyDatabase::ArchiveException::what() const noexcept
{
    return "the taxonomy archive is not a ZIP file or cannot be read";
}
const char* TaxonomyDatabase::UnpackException::what() const noexcept
{
    return "the taxonomy archive could not be unpacked (is the temporary folder full?)";
}
const char* TaxonomyDatabase::MissingNodesException::what() const noexcept
{
    return "the taxonomy archive holds no nodes.dmp";
}
const char* TaxonomyDatabase::CancelledException::what() const noexcept
{
    return "the unpacking of the taxonomy archive was cancelled";
}

TaxonomyDatabase::TaxonomyDatabase(const QString& archive)
    : archiveFileName(archive)
{
}

TaxonomyDatabase::~TaxonomyDatabase()
{
    removeFolder();
}

void TaxonomyDatabase::removeFolder()
{
    if (unpacked)
        folder.removeRecursively();
    unpacked = false;
}

bool TaxonomyDatabase::isSafeEntry(const QString& name, bool symbolicLink)
{
    // A link could point anywhere, and a later entry could be written through it.
    if (symbolicLink || name.isEmpty())
        return false;
    const QString normal = QString(name).replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (normal.startsWith(QLatin1Char('/')) || (normal.size() >= 2 && normal.at(1) == QLatin1Char(':')))
        return false;
    const QString base = QStringLiteral("/base");
    const QString resolved = QDir::cleanPath(base + QLatin1Char('/') + normal);
    return resolved.startsWith(base + QLatin1Char('/'));
}

void TaxonomyDatabase::open()
{
    removeFolder();
    refused.clear();

    QStringList safe;
    {
        QuaZip zip(archiveFileName);
        if (!zip.open(QuaZip::mdUnzip))
            throw ArchiveException();
        const QList<QuaZipFileInfo64> entries = zip.getFileInfoList64();
        if (zip.getZipError() != UNZ_OK)
            throw ArchiveException();
        for (const QuaZipFileInfo64& entry : entries) {
            if (isSafeEntry(entry.name, entry.isSymbolicLink())) {
                safe << entry.name;
            } else {
                refused << entry.name;
            }
        }
    }

    QTemporaryDir temporary(QDir::tempPath() + QStringLiteral("/sorvik-taxdump-XXXXXX"));
    if (!temporary.isValid())
        throw UnpackException();
    temporary.setAutoRemove(false);
    folder = QDir(temporary.path());
    unpacked = true;

    if (!extract(safe))
        throw UnpackException();
    if (!QFileInfo(folder.absoluteFilePath(nodesFileName)).isFile())
        throw MissingNodesException();
}

bool TaxonomyDatabase::extract(const QStringList& entries)
{
    QuaZip zip(archiveFileName);
    if (!zip.open(QuaZip::mdUnzip))
        return false;
    QByteArray block;
    for (const QString& name : entries) {
        const QString target = folder.absoluteFilePath(name);
        if (name.endsWith(QLatin1Char('/')) || name.endsWith(QLatin1Char('\\'))) {
            if (!QDir().mkpath(target))
                return false;
            continue;
        }
        if (!zip.setCurrentFile(name) || !QDir().mkpath(QFileInfo(target).absolutePath()))
            return false;
        QuaZipFile in(&zip);
        QFile out(target);
        if (!in.open(QIODevice::ReadOnly) || !out.open(QIODevice::WriteOnly))
            return false;
        // Blocks of 1 MB inflate in a few milliseconds, so a cancellation is seen at once.
        while (!(block = in.read(1 << 20)).isEmpty()) {
            if (cancelCheck && cancelCheck())
                throw CancelledException();
            if (out.write(block) != block.size())
                return false;
        }
        in.close();
        if (in.getZipError() != UNZ_OK || !out.flush())
            return false;
    }
    return true;
}

std::vector<std::unique_ptr<Ontology::Source>> TaxonomyDatabase::getSources() const
{
    auto makeSource = [this](const QString& file, const QString& key) {
        auto source = std::make_unique<Ontology::SourceBcp>(folder.absoluteFilePath(file));
        source->fieldSeparator = QStringLiteral("\t|\t");
        source->rowTerminator = QStringLiteral("\t|\n");
        source->finalTerminator = QStringLiteral("\t|");
        source->idColumn = 0;
        source->columns.insert(1, key);
        return source;
    };
    std::vector<std::unique_ptr<Ontology::Source>> sources;
    auto nodes = makeSource(nodesFileName, Ontology::SourceBcp::parentKey);
    // The rank as written: NCBI renames ranks now and then ("superkingdom" became "domain").
    nodes->columns.insert(2, Ontology::NodeKey::rank);
    nodes->sharedValueColumns.insert(2);
    sources.push_back(std::move(nodes));
    auto names = makeSource(namesFileName, Ontology::NodeKey::scientificName);
    // Only the scientific name, never a synonym or a common name: the fourth field is the class.
    names->filterColumn = 3;
    names->filterPrefix = QStringLiteral("scientific name");
    sources.push_back(std::move(names));
    return sources;
}

} // namespace Ncbi
} // namespace Zem
