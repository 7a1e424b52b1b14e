#pragma once

#include <QString>

namespace nu {

// The file in which a large output (a chart, the taxonomy cache) is written before it takes its
// target's name: ".NAME.XXXXXX.part" beside the target, renamed over it only once complete, so a
// crash never leaves a half-written file under the target's name. It gets the permissions of a
// new file under the user's umask (or those of the target it replaces), unlike a QTemporaryFile's
// owner-only ones. Parts that a killed run left behind are removed when the same target is
// written again; a part still being written by another process is locked and left alone.
class PartFile
{
public:
    explicit PartFile(const QString& target);
    ~PartFile();
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;

    // Creates the part file (and the target's folder); false when it cannot, with the reason in
    // getErrorString().
    bool create();
    // Flushes the part file to disk and renames it over the target; false when that fails.
    bool commit();

    QString getFileName() const { return fileName; }
    QString getTarget() const { return target; }
    QString getErrorString() const { return errorString; }

    // Whether name (without folder) is the part file of a target called targetName.
    static bool isPartOf(const QString& name, const QString& targetName);
    // Whether name (without folder) has the form of any part file: never a chart of its own.
    static bool isPartFileName(const QString& name);

private:
    void removeLeftovers() const;
    void discard();

    QString target;
    QString fileName;
    QString errorString;
    // Held open with an exclusive lock while the part is written, so that no other run takes it
    // for a leftover.
    int descriptor = -1;
    bool committed = false;
};

} // namespace nu
