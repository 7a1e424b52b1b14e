#pragma once

#include <QString>

#include <exception>

namespace Zem {
namespace Ontology {

// The cheap header check of an ontology file: it must be an SQLite database with the "nodes" and
// "info" tables and both info values; their values are kept.
class Ontology
{
public:
    class Exception : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };
    class OpenDatabaseException : public Exception
    {
    public:
        const char* what() const noexcept override;
    };
    class InvalidFormatException : public Exception
    {
    public:
        const char* what() const noexcept override;
    };

    explicit Ontology(const QString& fileName);

    QString getFileName() const { return fileName; }
    int getNodeNumber() const { return nodeNumber; }
    bool isCounted() const { return counted; }

private:
    void load();

    QString fileName;
    int nodeNumber = 0;
    bool counted = false;
};

} // namespace Ontology
} // namespace Zem
