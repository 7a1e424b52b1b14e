#include "nu/partfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nu {

namespace {

const QLatin1String partSuffix(".part");
constexpr int uniqueLength = 6;

QString randomText(int length)
{
    static const char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    QString text(length, Qt::Uninitialized);
    for (QChar& c : text)
        c = QLatin1Char(letters[QRandomGenerator::global()->bounded(int(sizeof(letters) - 1))]);
    return text;
}

QString systemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

} // namespace

PartFile::PartFile(const QString& targetName)
    : target(targetName)
{
}

PartFile::~PartFile()
{
    if (!committed)
        discard();
}

bool PartFile::isPartOf(const QString& name, const QString& targetName)
{
    const int unique = name.size() - 1 - targetName.size() - 1 - partSuffix.size();
    if (unique != uniqueLength || !name.startsWith(QLatin1Char('.')) || !name.endsWith(partSuffix))
        return false;
    return name.midRef(1, targetName.size()) == targetName && name.at(1 + targetName.size()) == QLatin1Char('.');
}

bool PartFile::isPartFileName(const QString& name)
{
    const int targetLength = name.size() - 1 - 1 - uniqueLength - partSuffix.size();
    return targetLength > 0 && isPartOf(name, name.mid(1, targetLength));
}

bool PartFile::create()
{
    discard();
    const QFileInfo info(target);
    const QString folder = info.absolutePath();
    if (!QDir().mkpath(folder)) {
        errorString = QStringLiteral("cannot create the folder %1").arg(folder);
        return false;
    }
    removeLeftovers();

    // open() applies the umask to 0666, as for any new file the user makes.
    for (int attempt = 0; attempt < 100 && descriptor < 0; ++attempt) {
        const QString name = folder + QStringLiteral("/.") + info.fileName() + QLatin1Char('.')
            + randomText(uniqueLength) + partSuffix;
        descriptor = ::open(QFile::encodeName(name).constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor >= 0)
            fileName = name;
        else if (errno != EEXIST)
            break;
    }
    if (descriptor < 0) {
        errorString = QStringLiteral("cannot create a file in %1: %2").arg(folder, systemError());
        return false;
    }
    ::flock(descriptor, LOCK_EX | LOCK_NB);
    // A replaced file keeps the permissions its owner gave it.
    struct stat existing;
    if (::stat(QFile::encodeName(target).constData(), &existing) == 0 && S_ISREG(existing.st_mode))
        ::fchmod(descriptor, existing.st_mode & 0777);
    return true;
}

void PartFile::removeLeftovers() const
{
    const QFileInfo info(target);
    const QDir folder(info.absolutePath());
    const QString targetName = info.fileName();
    const QStringList names = folder.entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString& name : names) {
        if (!isPartOf(name, targetName))
            continue;
        const QByteArray path = QFile::encodeName(folder.absoluteFilePath(name));
        const int fd = ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
        if (fd < 0)
            continue;
        // Unlocked: its writer is gone. Locked: another run is writing it now.
        struct stat status;
        if (::fstat(fd, &status) == 0 && S_ISREG(status.st_mode) && ::flock(fd, LOCK_EX | LOCK_NB) == 0)
            ::unlink(path.constData());
        ::close(fd);
    }
}

bool PartFile::commit()
{
    if (descriptor < 0 || committed)
        return false;
    // The content must be on disk before it takes the target's name.
    if (::fsync(descriptor) != 0) {
        errorString = QStringLiteral("cannot write %1: %2").arg(fileName, systemError());
        return false;
    }
    if (std::rename(QFile::encodeName(fileName).constData(), QFile::encodeName(target).constData()) != 0) {
        errorString = QStringLiteral("cannot rename %1 to %2: %3").arg(fileName, target, systemError());
        return false;
    }
    committed = true;
    ::close(descriptor);
    descriptor = -1;
    // The rename itself is made durable with the folder.
    const int folder = ::open(QFile::encodeName(QFileInfo(target).absolutePath()).constData(), O_RDONLY | O_CLOEXEC);
    if (folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
    return true;
}

void PartFile::discard()
{
    if (descriptor < 0)
        return;
    ::unlink(QFile::encodeName(fileName).constData());
    ::close(descriptor);
    descriptor = -1;
    fileName.clear();
}

} // namespace nu
