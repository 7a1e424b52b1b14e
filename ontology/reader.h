#pragma once

#include <QString>
#include <QVariantMap>

#include <exception>
#include <memory>

class QSqlQuery;

namespace nu {
namespace database {
class Connection;
}
} // namespace nu

namespace Zem {
namespace Ontology {

class Ontology;

// Streams an ontology file as openNode/closeNode events, depth first, from any node of the file:
// the nesting is rebuilt from each row's number of children and the block layout of the writer.
// Subclasses receive the events.
class Reader
{
public:
    class OntologyOpenException : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };
    class QueryExecutionException : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };
    class InvalidEndException : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };

    // Where a node lies in the file: its own row and the row where its children's block begins.
    class Position
    {
    public:
        Position()
            : row(0)
            , childrenStart(1)
        {
        }
        Position(int row, int childrenStart)
            : row(row)
            , childrenStart(childrenStart)
        {
        }
        int getRow() const { return row; }
        int getChildrenStart() const { return childrenStart; }
        bool operator==(const Position& other) const
        {
            return row == other.row && childrenStart == other.childrenStart;
        }
        bool operator!=(const Position& other) const { return !(*this == other); }

    private:
        int row;
        int childrenStart;
    };

    struct Node
    {
        QString id;
        QVariantMap data;
        // The values as the file holds them (JSON), for readers that keep the text.
        QString text;
        int count = 0;
        int row = 0;
    };

    Reader(const Ontology& ontology, const Position& start = Position());
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    void read();

    virtual void openNode(const QString& id, const QVariantMap& data, const Position& position) = 0;
    virtual void closeNode(const QString& id, const QVariantMap& data) = 0;
    // The same with the values' text, for readers that keep it (data is then empty); by default
    // the call above.
    virtual void closeNode(const QString& id, const QVariantMap& data, const QString& text);

protected:
    ~Reader();
    // Asked right after openNode(): whether the node's children are delivered with their data.
    // A consumer that has no use for a node's subtree answers false, and its children come with
    // empty data (their own children are asked about in turn).
    virtual bool shouldReadChildData() const { return true; }
    // Whether nodes come with their values as the file's text rather than parsed: a consumer
    // that copies millions of nodes' values parses them faster itself.
    virtual bool shouldKeepDataText() const { return false; }
    Node readNode(bool withData = true);
    void read(const Node& node);
    // While openNode() runs: the node's values as the file's text, when shouldKeepDataText().
    const QString& getOpenText() const { return *openText; }

private:
    std::unique_ptr<nu::database::Connection> connection;
    std::unique_ptr<QSqlQuery> query;
    int currentRow = 0;
    int childrenStart = 1;
    bool keepText = false;
    const QString* openText = nullptr;
};

} // namespace Ontology
} // namespace Zem
