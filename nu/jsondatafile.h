#pragma once

#include <QJsonArray>
#include <QString>

#include <exception>

namespace nu {

// A JSON file in a small versioned envelope: {"descriptor": ..., "version": ..., "data": [...]}.
// Reading checks that the descriptor and version are the expected ones; writing replaces the file
// only once the whole new content is on disk.
class JsonDataFile
{
public:
    // What the caller expects of a file.
    class Info
    {
    public:
        Info(const QString& path, const QString& descriptor, int version);

        QString path;
        QString descriptor;
        int version;
    };

    class Exception : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };
    // The file could not be opened, or (saving) not be written completely.
    class FileOpenException : public Exception
    {
    public:
        const char* what() const noexcept override;
    };
    // Not a file of the expected kind, or not JSON at all.
    class WrongDescriptorException : public Exception
    {
    public:
        const char* what() const noexcept override;
    };
    // Of the expected kind but of another version, older or newer.
    class DifferentVersionException : public Exception
    {
    public:
        const char* what() const noexcept override;
    };

    static const QString DESCRIPTOR;
    static const QString VERSION;
    static const QString DATA;

    // Reads and checks the file.
    explicit JsonDataFile(const Info& info);

    const QString& descriptor() const { return fileDescriptor; }
    int version() const { return fileVersion; }
    const QJsonArray& data() const { return fileData; }

    static void save(const Info& info, const QJsonArray& data);

private:
    QString fileDescriptor;
    int fileVersion = 0;
    QJsonArray fileData;
};

} // namespace nu
