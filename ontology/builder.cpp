#include "ontology/builder.h"

#include "nu/compactjson.h"
#include "nu/database.h"
#include "nu/partfile.h"
#include "ontology/nodekeys.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QThreadPool>

#include <algorithm>
#include <array>
#include <climits>
#include <limits>

namespace Zem {
namespace Ontology {

namespace {

enum Mark : unsigned char { Unvisited = 0, InProgress = 1, Done = 2 };

// Small counts repeat across millions of nodes; sharing their text saves one string each.
QString numberText(qint64 value)
{
    static const std::array<QString, 1024> small = [] {
        std::array<QString, 1024> texts;
        for (int i = 0; i < 1024; ++i)
            texts[i] = QString::number(i);
        return texts;
    }();
    if (value >= 0 && value < static_cast<qint64>(small.size()))
        return small[static_cast<size_t>(value)];
    return QString::number(value);
}

// Counts come from user files: a sum past the range of 64 bits stays at its end.
qint64 saturatingAdd(qint64 a, qint64 b)
{
    qint64 sum = 0;
    if (__builtin_add_overflow(a, b, &sum))
        return b > 0 ? std::numeric_limits<qint64>::max() : std::numeric_limits<qint64>::min();
    return sum;
}

constexpr int cancelCheckInterval = 4096;
constexpr int nodeBlockSize = 4096;
constexpr int rowsPerStatement = 64;

} // namespace

const char* Builder::Exception::what() const noexcept
{
    return "the ontology could not be built";
}
const char* Builder::NoRootException::what() const noexcept
{
    return "the input has no root node";
}
const char* Builder::OpenDatabaseException::what() const noexcept
{
    return "the output file could not be created";
}
const char* Builder::StatementExecException::what() const noexcept
{
    return "writing to the output file failed";
}
const char* Builder::StatementPrepareException::what() const noexcept
{
    return "the output file could not be prepared for writing";
}
const char* Builder::CycleException::what() const noexcept
{
    return "the taxonomy has a cycle (a taxon is its own ancestor)";
}
const char* Builder::CancelledException::what() const noexcept
{
    return "cancelled";
}

Builder::Node::Node(const QString& nodeId)
    : id(nodeId)
{
}

QString Builder::Node::getDataString() const
{
    return data.toJson();
}

Builder::Builder(const QString& file, QObject* parent)
    : QObject(parent)
    , fileName(file)
    , hashSeed(uint(qGlobalQHashSeed()))
{
}

Builder::~Builder()
{
    // A cancelled build of a whole taxonomy holds millions of nodes, which take a second or more
    // to free: long enough to hold up the end of the cancellation. They are memory only (the
    // writer and its file are gone by now), so a pool thread frees them.
    if (cancelled && nodeNumber > 0) {
        auto nodes = std::make_shared<std::vector<std::unique_ptr<Node[]>>>(std::move(blocks));
        QThreadPool::globalInstance()->start([nodes] { nodes->clear(); });
    }
}

template <typename Visit>
void Builder::forEachNode(Visit visit)
{
    int left = nodeNumber;
    for (auto& block : blocks) {
        const int n = std::min(left, nodeBlockSize);
        for (int i = 0; i < n; ++i)
            visit(block[i]);
        left -= n;
    }
}

void Builder::visitNodes(const std::function<void(Node&)>& visit)
{
    forEachNode(visit);
}

void Builder::growTable()
{
    std::vector<Slot> grown(table.empty() ? 2048 : table.size() * 2, Slot{0, 0});
    const size_t mask = grown.size() - 1;
    quint32 number = 0;
    forEachNode([&](Node& node) {
        size_t at = node.hash & mask;
        while (grown[at].node != 0)
            at = (at + 1) & mask;
        grown[at] = {node.hash, ++number};
    });
    table.swap(grown);
}

Builder::Node* Builder::lookUp(QStringView id, uint h) const
{
    if (table.empty())
        return nullptr;
    const size_t mask = table.size() - 1;
    for (size_t at = h & mask;; at = (at + 1) & mask) {
        const Slot& slot = table[at];
        if (slot.node == 0)
            return nullptr;
        if (slot.hash == h) {
            const quint32 index = slot.node - 1;
            Node* node = &blocks[index / nodeBlockSize][index % nodeBlockSize];
            if (QStringView(node->id) == id)
                return node;
        }
    }
}

Builder::Node* Builder::create(const QString& id, uint h)
{
    if ((size_t(nodeNumber) + 1) * 2 > table.size())
        growTable();
    if (nodeNumber % nodeBlockSize == 0)
        blocks.push_back(std::make_unique<Node[]>(nodeBlockSize));
    Node* node = &blocks.back()[nodeNumber % nodeBlockSize];
    ++nodeNumber;
    node->id = id;
    node->hash = h;
    const size_t mask = table.size() - 1;
    size_t at = h & mask;
    while (table[at].node != 0)
        at = (at + 1) & mask;
    table[at] = {h, quint32(nodeNumber)};
    return node;
}

Builder::Node* Builder::findNode(const QString& id) const
{
    return findNode(QStringView(id));
}

Builder::Node* Builder::findNode(QStringView id) const
{
    return lookUp(id, qHash(id, hashSeed));
}

Builder::Node* Builder::getNode(const QString& id)
{
    const uint h = qHash(QStringView(id), hashSeed);
    Node* node = lookUp(QStringView(id), h);
    return node ? node : create(id, h);
}

Builder::Node* Builder::getNode(QStringView id)
{
    const uint h = qHash(id, hashSeed);
    Node* node = lookUp(id, h);
    return node ? node : create(id.toString(), h);
}

void Builder::addRoot(const QString& id)
{
    root = getNode(id);
}

void Builder::link(Node* parent, Node* child)
{
    // The usual node has one parent, so "already a child?" is answered from the child itself;
    // only nodes that ever had several parents pay for a scan of the parent's children.
    if (!child->manyParents) {
        if (child->parent == parent || (keepFirstParent && child->parent))
            return;
        if (child->parent == nullptr) {
            child->parent = parent;
            parent->children.push_back(child);
            return;
        }
        child->manyParents = true;
        child->parent = nullptr;
    }
    if (std::find(parent->children.begin(), parent->children.end(), child) == parent->children.end())
        parent->children.push_back(child);
}

void Builder::unlink(Node* parent, Node* child)
{
    if (!child->manyParents && child->parent == parent)
        child->parent = nullptr;
}

void Builder::addChild(const QString& parentId, const QString& childId)
{
    if (parentId == childId) {
        addRoot(parentId);
        return;
    }
    Node* parent = getNode(parentId);
    Node* child = getNode(childId);
    link(parent, child);
}

void Builder::addChild(Node* parent, Node* child)
{
    if (parent == child)
        root = parent;
    else
        link(parent, child);
}

void Builder::addData(const QString& id, const QString& key, const QString& value)
{
    getNode(id)->data.insert(key, value);
}

void Builder::setWriterCommitSize(int size)
{
    if (size > 0)
        writerCommitSize = size;
}

void Builder::setCancelCheck(std::function<bool()> check)
{
    cancelCheck = std::move(check);
}

void Builder::checkCancelled(int step)
{
    if (cancelCheck && step % cancelCheckInterval == 0 && cancelCheck()) {
        cancelled = true;
        throw CancelledException();
    }
}

void Builder::resetMarks()
{
    forEachNode([](Node& node) { node.state = Unvisited; });
}

void Builder::count(bool trim)
{
    if (!root)
        throw NoRootException();
    Counter counter(root, this);
    notifyCountingStart();
    counter.setTrim(trim);
    resetMarks();
    counter.count(root);
    counted = true;
}

void Builder::build()
{
    if (!root)
        throw NoRootException();
    resetMarks();
    Writer writer(fileName, this);
    notifyBuildingStart();
    writer.setCommitSize(writerCommitSize);
    writer.insertNode(root);
    writer.insertChildren(root);
    writer.end(counted);
}

void Builder::writeExtras(QSqlDatabase&)
{
}

void Builder::rowWritten(const Node&, int)
{
}

void Builder::notifyBuildingStart()
{
    int total = nodeNumber;
    if (counted) {
        const QString* text = root->data.find(NodeKey::accumCount);
        const qint64 accum = text ? text->toLongLong() : 0;
        total = static_cast<int>(std::clamp<qint64>(accum, INT_MIN, INT_MAX));
    }
    timer.restart(total / 200);
    emit signalBuildingStart(total);
}

void Builder::notifyCountingStart()
{
    const int total = nodeNumber;
    timer.restart(total / 200);
    emit signalCountingStart(total);
}

void Builder::notifyNodesCounted(int n)
{
    if (timer.isTime(n))
        emit signalNodesCounted(n);
}

void Builder::notifyNodesInserted(int n)
{
    if (timer.isTime(n))
        emit signalNodesInserted(n);
}

// ---------------------------------------------------------------------------------------------
// Counter

Builder::Counter::Counter(Node* startNode, Builder* owner)
    : start(startNode)
    , builder(owner)
{
}

void Builder::Counter::setTrim(bool on)
{
    trim = on;
}

qint64 Builder::Counter::count()
{
    return count(start);
}

qint64 Builder::Counter::count(Node* top)
{
    // Depth first, children before their parent, with an explicit stack: a taxonomy path can be
    // far deeper than the thread's stack allows for recursion. A node reached again through a
    // second parent keeps the total it already has; a node reached again while it is still open
    // is its own ancestor.
    struct Frame
    {
        Node* node;
        size_t next;
        size_t kept;
        qint64 sum;
    };
    std::vector<Frame> stack;

    auto open = [&](Node* node) {
        node->state = InProgress;
        stack.push_back({node, 0, 0, 0});
    };
    // Records the result r of the child at frame.next: kept or trimmed away.
    auto childDone = [&](Frame& frame, qint64 r) {
        Node* parent = frame.node;
        Node* child = parent->children[frame.next];
        if (trim && r <= 0)
            builder->unlink(parent, child);
        else
            parent->children[frame.kept++] = child;
        ++frame.next;
        frame.sum = saturatingAdd(frame.sum, r);
    };

    if (top->state == InProgress)
        throw CycleException();
    open(top);
    qint64 result = 0;
    while (!stack.empty()) {
        Frame& frame = stack.back();
        Node* node = frame.node;
        if (frame.next < node->children.size()) {
            Node* child = node->children[frame.next];
            if (child->state == Done) {
                const QString* accum = child->data.find(NodeKey::accumCount);
                childDone(frame, accum ? accum->toLongLong() : 0);
            } else if (child->state == InProgress) {
                throw CycleException();
            } else {
                open(child);
            }
            continue;
        }

        node->children.resize(frame.kept);
        qint64 sum = frame.sum;
        const QString* own = node->data.find(NodeKey::count);
        if (own)
            sum = saturatingAdd(sum, own->toLongLong());
        else
            node->data.insert(NodeKey::count, numberText(0));
        node->data.insert(NodeKey::accumCount, numberText(sum));
        node->state = Done;
        stack.pop_back();

        const int k = counted++;
        builder->notifyNodesCounted(k);
        builder->checkCancelled(k);

        if (stack.empty())
            result = sum;
        else
            childDone(stack.back(), sum);
    }
    return result;
}

// ---------------------------------------------------------------------------------------------
// Writer

Builder::Writer::Writer(const QString& file, Builder* owner)
    : part(std::make_unique<nu::PartFile>(file))
    , builder(owner)
{
    // An interrupted write never leaves a broken file under the target's name.
    if (!part->create())
        throw OpenDatabaseException();

    connection = std::make_unique<nu::database::Connection>(
        QStringLiteral("zem-ontology-builder-writer"), part->getFileName(), false);
    if (!connection->open())
        throw OpenDatabaseException();

    // No journal and no syncing while writing: a crash leaves only the temporary file, which
    // is never taken for a good one. The finished file is synced before the rename.
    exec(QStringLiteral("PRAGMA journal_mode = OFF"));
    exec(QStringLiteral("PRAGMA synchronous = OFF"));
    if (!connection->getDatabase().transaction())
        throw StatementExecException();
    exec(QStringLiteral("CREATE TABLE nodes( id TEXT, count INTEGER, data TEXT)"));
    exec(QStringLiteral("CREATE TABLE info( key TEXT PRIMARY KEY, value TEXT)"));
}

Builder::Writer::~Writer()
{
    // The connection goes before the part file it writes is removed.
    insert.reset();
    insertMany.reset();
    connection.reset();
}

void Builder::Writer::setCommitSize(int size)
{
    if (size > 0)
        commitSize = size;
}

void Builder::Writer::exec(const QString& sql)
{
    QSqlQuery query(connection->getDatabase());
    if (!query.prepare(sql))
        throw StatementPrepareException();
    if (!query.exec())
        throw StatementExecException();
}

void Builder::Writer::prepareInsert()
{
    insert = std::make_unique<QSqlQuery>(connection->getDatabase());
    if (!insert->prepare(QStringLiteral("INSERT INTO nodes (id, count, data) VALUES ( :id, :count, :data)")))
        throw StatementPrepareException();
    QString many = QStringLiteral("INSERT INTO nodes (id, count, data) VALUES (?, ?, ?)");
    for (int i = 1; i < rowsPerStatement; ++i)
        many += QStringLiteral(", (?, ?, ?)");
    insertMany = std::make_unique<QSqlQuery>(connection->getDatabase());
    if (!insertMany->prepare(many))
        throw StatementPrepareException();
    rows.reserve(rowsPerStatement);
}

void Builder::Writer::commitAndBegin()
{
    QSqlDatabase db = connection->getDatabase();
    if (!db.commit() || !db.transaction())
        throw StatementExecException();
}

void Builder::Writer::flushRows()
{
    // A full batch goes in as one statement, a remainder row by row; the rows keep their order.
    if (rows.size() == size_t(rowsPerStatement)) {
        int at = 0;
        for (const Row& row : rows) {
            insertMany->bindValue(at++, row.id);
            insertMany->bindValue(at++, row.count);
            insertMany->bindValue(at++, row.data);
        }
        if (!insertMany->exec())
            throw StatementExecException();
    } else {
        for (const Row& row : rows) {
            insert->bindValue(0, row.id);
            insert->bindValue(1, row.count);
            insert->bindValue(2, row.data);
            if (!insert->exec())
                throw StatementExecException();
        }
    }
    rows.clear();
}

void Builder::Writer::insertNode(Node* node)
{
    // Prepared once, re-bound for every batch of rows.
    if (!insert)
        prepareInsert();
    builder->rowWritten(*node, inserted);
    rows.push_back({node->id, static_cast<int>(node->children.size()), node->getDataString()});
    if (rows.size() == size_t(rowsPerStatement))
        flushRows();

    ++pending;
    ++inserted;
    if (pending > commitSize) {
        pending = 0;
        flushRows();
        commitAndBegin();
    }
    builder->notifyNodesInserted(inserted);
    builder->checkCancelled(inserted);
}

void Builder::Writer::insertChildren(Node* top)
{
    // Each node's children go in as one block; then each child's own block follows, in child
    // order, depth first. The explicit stack holds the path from top, so a node met again on
    // its own path is a cycle rather than an endless file.
    struct Frame
    {
        Node* node;
        size_t next;
    };
    std::vector<Frame> stack;
    auto open = [&](Node* node) {
        if (node->state == InProgress)
            throw CycleException();
        node->state = InProgress;
        for (Node* child : node->children)
            insertNode(child);
        stack.push_back({node, 0});
    };

    open(top);
    while (!stack.empty()) {
        Frame& frame = stack.back();
        if (frame.next < frame.node->children.size()) {
            Node* child = frame.node->children[frame.next++];
            open(child);
        } else {
            frame.node->state = Unvisited;
            stack.pop_back();
        }
    }
}

void Builder::Writer::end(bool counted)
{
    if (insert)
        flushRows();
    QSqlQuery info(connection->getDatabase());
    const QString sql = QStringLiteral("INSERT INTO info (key, value) VALUES ( :key, :value)");
    if (!info.prepare(sql))
        throw StatementPrepareException();
    info.bindValue(QStringLiteral(":key"), QStringLiteral("nodes"));
    info.bindValue(QStringLiteral(":value"), inserted);
    if (!info.exec())
        throw StatementExecException();
    if (!info.prepare(sql))
        throw StatementPrepareException();
    info.bindValue(QStringLiteral(":key"), QStringLiteral("counted"));
    info.bindValue(QStringLiteral(":value"), counted);
    if (!info.exec())
        throw StatementExecException();
    info.finish();
    {
        QSqlDatabase database = connection->getDatabase();
        builder->writeExtras(database);
    }
    insert.reset();
    insertMany.reset();
    if (!connection->getDatabase().commit())
        throw StatementExecException();
    info = QSqlQuery();
    connection.reset();
    if (!part->commit())
        throw StatementExecException();
}

} // namespace Ontology
} // namespace Zem
