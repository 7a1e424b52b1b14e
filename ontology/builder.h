#pragma once

#include "nu/manualtimer.h"
#include "ontology/nodedata.h"

#include <QObject>
#include <QString>
#include <QVariantMap>

#include <exception>
#include <functional>
#include <memory>
#include <vector>

namespace nu {
class PartFile;
namespace database {
class Connection;
}
} // namespace nu

class QSqlDatabase;
class QSqlQuery;

namespace Zem {
namespace Ontology {

// Collects a tree of named nodes in memory, optionally counts it (own counts summed towards the
// root, empty branches trimmed) and writes it as an ontology file: an SQLite database whose
// "nodes" rows hold each node before its children's block, read back by Reader.
class Builder : public QObject
{
    Q_OBJECT
public:
    class Exception : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };
    class NoRootException : public Exception
    {
    public:
        const char* what() const noexcept override;
    };
    class OpenDatabaseException : public Exception
    {
    public:
        const char* what() const noexcept override;
    };
    class StatementExecException : public Exception
    {
    public:
        const char* what() const noexcept override;
    };
    class StatementPrepareException : public Exception
    {
    public:
        const char* what() const noexcept override;
    };
    // A node that is its own ancestor (a damaged dump or input file can make one).
    class CycleException : public Exception
    {
    public:
        const char* what() const noexcept override;
    };
    // The cancel check answered true in the middle of counting, writing or reading a source.
    class CancelledException : public Exception
    {
    public:
        const char* what() const noexcept override;
    };

    class Node
    {
    public:
        Node() = default;
        explicit Node(const QString& id);

        QString getDataString() const;
        // Whether some node holds it as a child: the root and ids that only sources of counts
        // named are not linked.
        bool isLinked() const { return parent != nullptr || manyParents; }

        QString id;
        NodeData data;
        std::vector<Node*> children;

    private:
        friend class Builder;
        // Bookkeeping that keeps linking O(1) and traversals free of recursion.
        Node* parent = nullptr;        // the first parent, while the node has only one
        uint hash = 0;
        bool manyParents = false;      // linked under more than one parent at some time
        unsigned char state = 0;       // traversal mark of count() and build()
    };

    class Counter
    {
    public:
        Counter(Node* start, Builder* builder);
        void setTrim(bool trim);
        qint64 count();
        qint64 count(Node* node);

    private:
        Node* start = nullptr;
        int counted = 0;
        bool trim = false;
        Builder* builder = nullptr;
    };

    class Writer
    {
    public:
        Writer(const QString& fileName, Builder* builder);
        ~Writer();
        Writer(const Writer&) = delete;
        Writer& operator=(const Writer&) = delete;

        void insertNode(Node* node);
        void insertChildren(Node* node);
        void end(bool counted);
        void exec(const QString& sql);
        void setCommitSize(int size);

    private:
        struct Row
        {
            QString id;
            int count;
            QString data;
        };

        void commitAndBegin();
        void prepareInsert();
        void flushRows();

        int commitSize = 10000;
        int pending = 0;
        int inserted = 0;
        // The file is written under a temporary name and takes its own only when complete.
        std::unique_ptr<nu::PartFile> part;
        Builder* builder = nullptr;
        std::unique_ptr<nu::database::Connection> connection;
        std::unique_ptr<QSqlQuery> insert;
        // Rows wait here to go in many at a time: one statement per row costs twice as long.
        std::unique_ptr<QSqlQuery> insertMany;
        std::vector<Row> rows;
    };

    explicit Builder(const QString& fileName, QObject* parent = nullptr);
    ~Builder() override;

    Node* getNode(const QString& id);
    Node* findNode(const QString& id) const;
    // The same without making a string for an id that is there already.
    Node* getNode(QStringView id);
    Node* findNode(QStringView id) const;
    Node* getRoot() const { return root; }
    // Calls visit on every node made so far, linked or not, in the order they were made.
    void visitNodes(const std::function<void(Node&)>& visit);
    int getNodeNumber() const { return nodeNumber; }
    QString getFileName() const { return fileName; }
    bool isCounted() const { return counted; }

    void addRoot(const QString& id);
    void addChild(const QString& parentId, const QString& childId);
    void addData(const QString& id, const QString& key, const QString& value);
    // The same for sources that hold their nodes already, saving the look-ups by id.
    void addChild(Node* parent, Node* child);

    // Virtual so that a builder of several samples counts them all.
    virtual void count(bool trim);
    void build();
    void setWriterCommitSize(int size);

    // Asked now and then during long loops; when it answers true, the loop throws
    // CancelledException. The build task points it at its thread's interruption request.
    void setCancelCheck(std::function<bool()> check);
    // Whether a node linked under a parent stays there when linked under another: samples whose
    // trees disagree (a report's taxon placed elsewhere) keep one tree, the first sample's.
    void setKeepFirstParent(bool keep) { keepFirstParent = keep; }
    void checkCancelled(int step);

signals:
    void signalBuildingStart(int total);
    void signalNodesInserted(int inserted);
    void signalCountingStart(int total);
    void signalNodesCounted(int counted);

protected:
    void notifyBuildingStart();
    void notifyCountingStart();
    void notifyNodesCounted(int n);
    void notifyNodesInserted(int n);
    // Called as the file is written, before its last commit: a subclass adds tables or info rows
    // of its own there, so they are in the file when it takes its name, and never without it.
    virtual void writeExtras(QSqlDatabase& database);
    // Called for every row as it is written, in row order: a node under several parents has a row
    // under each.
    virtual void rowWritten(const Node& node, int row);

    nu::ManualTimer timer{1000};

private:
    void link(Node* parent, Node* child);
    void unlink(Node* parent, Node* child);
    void resetMarks();
    void growTable();
    Node* lookUp(QStringView id, uint hash) const;
    Node* create(const QString& id, uint hash);
    template <typename Visit>
    void forEachNode(Visit visit);

    QString fileName;
    Node* root = nullptr;
    // The nodes live in blocks owned by the builder, so a node costs no allocation of its own.
    // The table finds them by id: open addressing on (hash, node number + 1), half empty, so a
    // look-up touches one slot line and, on a hash match, the node.
    struct Slot
    {
        uint hash;
        quint32 node;
    };
    std::vector<std::unique_ptr<Node[]>> blocks;
    int nodeNumber = 0;
    std::vector<Slot> table;
    uint hashSeed = 0;
    int writerCommitSize = 10000;
    bool counted = false;
    bool keepFirstParent = false;
    std::function<bool()> cancelCheck;
    bool cancelled = false;
};

} // namespace Ontology
} // namespace Zem
