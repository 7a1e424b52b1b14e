#pragma once

#include <QDir>
#include <QString>

#include <exception>
#include <functional>
#include <memory>
#include <vector>

namespace Zem {
namespace Ontology {
class Source;
}

namespace Ncbi {

// The NCBI taxonomy dump archive (taxdmp.zip): unpacked into a temporary folder, which is
// removed again with this object, it gives the two sources that build the taxonomy: nodes.dmp
// links every taxon under its parent and gives its rank, names.dmp gives it its scientific name.
// The ids NCBI merged or deleted (merged.dmp, delnodes.dmp) are read from the same folder by
// TaxonomyChanges.
class TaxonomyDatabase
{
public:
    class Exception : public std::exception
    {
    };
    class ArchiveException : public Exception
    {
    public:
        const char* what() const noexcept override;
    };
    class UnpackException : public Exception
    {
    public:
        const char* what() const noexcept override;
    };
    class MissingNodesException : public Exception
    {
    public:
        const char* what() const noexcept override;
    };
    // The cancel check answered true while the archive was being unpacked.
    class CancelledException : public Exception
    {
    public:
        const char* what() const noexcept override;
    };

    static const QString nodesFileName;
    static const QString namesFileName;

    explicit TaxonomyDatabase(const QString& archiveFileName);
    ~TaxonomyDatabase();
    TaxonomyDatabase(const TaxonomyDatabase&) = delete;
    TaxonomyDatabase& operator=(const TaxonomyDatabase&) = delete;

    // Unpacks the archive. Entries that would land outside the folder (through "..", an
    // absolute path or a symbolic link) are not written anywhere.
    void open();
    // Asked between blocks of the unpacking (a few milliseconds apart): true stops it with
    // CancelledException, so that a cancelled import does not first unpack hundreds of MB.
    void setCancelCheck(std::function<bool()> check) { cancelCheck = std::move(check); }
    // The nodes source, then the names source; the caller takes them over.
    std::vector<std::unique_ptr<Ontology::Source>> getSources() const;
    QDir getFolder() const { return folder; }
    // Entries of the archive left out because they pointed outside the folder.
    QStringList getRefusedEntries() const { return refused; }

    // The archive names an entry may have to be unpacked: inside the folder, not a link.
    static bool isSafeEntry(const QString& name, bool symbolicLink);

private:
    void removeFolder();
    // Unpacks these entries into the folder; false when one could not be read or written.
    bool extract(const QStringList& entries);

    QString archiveFileName;
    QDir folder;
    bool unpacked = false;
    QStringList refused;
    std::function<bool()> cancelCheck;
};

} // namespace Ncbi
} // namespace Zem
