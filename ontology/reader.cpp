#include "ontology/reader.h"

#include "nu/compactjson.h"
#include "nu/database.h"
#include "ontology/ontology.h"

#include <QSqlQuery>
#include <QVariant>

#include <vector>

namespace Zem {
namespace Ontology {

const char* Reader::OntologyOpenException::what() const noexcept
{
    return "the ontology file could not be opened";
}
const char* Reader::QueryExecutionException::what() const noexcept
{
    return "the ontology file could not be read";
}
const char* Reader::InvalidEndException::what() const noexcept
{
    return "the ontology file ends before all its nodes were read";
}

Reader::Reader(const Ontology& ontology, const Position& start)
    : connection(std::make_unique<nu::database::Connection>(QStringLiteral("zem-ontology-reader"),
                                                            ontology.getFileName(), true))
{
    if (!connection->open())
        throw OntologyOpenException();
    // Forward only: otherwise Qt caches every row read so far.
    query = std::make_unique<QSqlQuery>(connection->getDatabase());
    query->setForwardOnly(true);
    if (!query->prepare(QStringLiteral("SELECT id, count, data FROM nodes LIMIT -1 OFFSET :offset")))
        throw QueryExecutionException();
    query->bindValue(QStringLiteral(":offset"), start.getRow());
    if (!query->exec())
        throw QueryExecutionException();
    currentRow = start.getRow();
    childrenStart = start.getChildrenStart();
}

Reader::~Reader()
{
    query.reset();
}

Reader::Node Reader::readNode(bool withData)
{
    if (!query->next())
        throw InvalidEndException();
    Node node;
    node.id = query->value(0).toString();
    node.count = query->value(1).toInt();
    if (withData && keepText)
        node.text = query->value(2).toString();
    else if (withData)
        node.data = nu::fromCompactJson(query->value(2).toString());
    node.row = currentRow++;
    return node;
}

void Reader::closeNode(const QString& id, const QVariantMap& data, const QString&)
{
    closeNode(id, data);
}

void Reader::read()
{
    keepText = shouldKeepDataText();
    const Node node = readNode();
    while (currentRow < childrenStart)
        readNode(false);
    read(node);
}

void Reader::read(const Node& top)
{
    // The recursion "open, read the children block, descend into each child, close" with an
    // explicit stack, so any depth of tree is read without exhausting the thread's stack.
    struct Frame
    {
        Node node;
        std::vector<Node> children;
        size_t next = 0;
    };
    std::vector<Frame> stack;

    auto open = [&](Node node) {
        openText = &node.text;
        openNode(node.id, node.data, Position(node.row, currentRow));
        openText = nullptr;
        Frame frame;
        const int n = node.count;
        const bool childData = shouldReadChildData();
        frame.node = std::move(node);
        if (n > 0)
            frame.children.reserve(static_cast<size_t>(std::min(n, 1 << 16)));
        for (int i = 0; i < n; ++i)
            frame.children.push_back(readNode(childData));
        stack.push_back(std::move(frame));
    };

    open(top);
    while (!stack.empty()) {
        Frame& frame = stack.back();
        if (frame.next < frame.children.size()) {
            Node child = std::move(frame.children[frame.next++]);
            open(std::move(child));
        } else {
            const Node node = std::move(frame.node);
            stack.pop_back();
            closeNode(node.id, node.data, node.text);
        }
    }
}

} // namespace Ontology
} // namespace Zem
