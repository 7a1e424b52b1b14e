#include "nu/jsondatafile.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace nu {

const QString JsonDataFile::DESCRIPTOR = QStringLiteral("descriptor");
const QString JsonDataFile::VERSION = QStringLiteral("version");
const QString JsonDataFile::DATA = QStringLiteral("data");

JsonDataFile::Info::Info(const QString& path, const QString& descriptor, int version)
    : path(path)
    , descriptor(descriptor)
    , version(version)
{
}

const char* JsonDataFile::Exception::what() const noexcept
{
    return "JSON data file error";
}

const char* JsonDataFile::FileOpenException::what() const noexcept
{
    return "the file cannot be opened";
}

const char* JsonDataFile::WrongDescriptorException::what() const noexcept
{
    return "the file is not of the expected kind";
}

const char* JsonDataFile::DifferentVersionException::what() const noexcept
{
    return "the file is of another version";
}

JsonDataFile::JsonDataFile(const Info& info)
{
    QFile file(info.path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        throw FileOpenException();
    // A file that does not parse reads as an empty object, and so has the wrong descriptor.
    const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
    fileDescriptor = root.value(DESCRIPTOR).toString();
    fileVersion = root.value(VERSION).toInt();
    fileData = root.value(DATA).toArray();
    if (fileDescriptor != info.descriptor)
        throw WrongDescriptorException();
    if (fileVersion != info.version)
        throw DifferentVersionException();
}

void JsonDataFile::save(const Info& info, const QJsonArray& data)
{
    QJsonObject root;
    root.insert(DESCRIPTOR, info.descriptor);
    root.insert(VERSION, info.version);
    root.insert(DATA, data);
    const QByteArray content = QJsonDocument(root).toJson();

    // The file the user had stays as it was unless the new one is written completely. Unbuffered,
    // so that a short write (a full disk) shows in write()'s count: a buffered QSaveFile lets it
    // pass and commits a truncated file.
    QSaveFile file(info.path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text | QIODevice::Unbuffered))
        throw FileOpenException();
    if (file.write(content) != content.size()) {
        file.cancelWriting();
        throw FileOpenException();
    }
    if (!file.commit())
        throw FileOpenException();
}

} // namespace nu
