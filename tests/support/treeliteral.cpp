#include "tests/support/treeliteral.h"

#include "ontology/builder.h"

#include <stdexcept>
#include <vector>

namespace Sorvik {
namespace Test {

namespace {

class Parser
{
public:
    Parser(Zem::Ontology::Builder& b, const QString& t)
        : builder(b)
        , text(t)
    {
    }

    void parse()
    {
        std::vector<QString> parents;
        QString last;
        skipBlanks();
        while (pos < text.size()) {
            const QChar c = text.at(pos);
            if (c == QLatin1Char('(')) {
                if (last.isEmpty())
                    throw std::invalid_argument("'(' without a node");
                parents.push_back(last);
                ++pos;
            } else if (c == QLatin1Char(')')) {
                if (parents.empty())
                    throw std::invalid_argument("unbalanced ')'");
                parents.pop_back();
                ++pos;
            } else {
                last = node();
                if (parents.empty()) {
                    if (builder.getRoot())
                        throw std::invalid_argument("two roots");
                    builder.addRoot(last);
                } else {
                    builder.addChild(parents.back(), last);
                }
            }
            skipBlanks();
        }
        if (!parents.empty())
            throw std::invalid_argument("unbalanced '('");
    }

private:
    QString node()
    {
        const QString id = word();
        if (id.isEmpty())
            throw std::invalid_argument("empty id");
        builder.getNode(id);
        if (pos < text.size() && text.at(pos) == QLatin1Char('=')) {
            ++pos;
            QString name;
            if (pos < text.size() && text.at(pos) == QLatin1Char('"')) {
                const int close = text.indexOf(QLatin1Char('"'), pos + 1);
                if (close < 0)
                    throw std::invalid_argument("unclosed quote");
                name = text.mid(pos + 1, close - pos - 1);
                pos = close + 1;
            } else {
                name = word();
            }
            builder.addData(id, QStringLiteral("scientific name"), name);
        }
        if (pos < text.size() && text.at(pos) == QLatin1Char(':')) {
            ++pos;
            builder.addData(id, QStringLiteral("count"), word());
        }
        return id;
    }

    QString word()
    {
        const int start = pos;
        while (pos < text.size()) {
            const QChar c = text.at(pos);
            if (c.isSpace() || c == QLatin1Char('(') || c == QLatin1Char(')') || c == QLatin1Char(':')
                || c == QLatin1Char('='))
                break;
            ++pos;
        }
        return text.mid(start, pos - start);
    }

    void skipBlanks()
    {
        while (pos < text.size() && text.at(pos).isSpace())
            ++pos;
    }

    Zem::Ontology::Builder& builder;
    QString text;
    int pos = 0;
};

} // namespace

void buildTree(Zem::Ontology::Builder& builder, const QString& literal)
{
    Parser(builder, literal).parse();
}

void writeTree(const QString& fileName, const QString& literal, bool count, bool trim)
{
    Zem::Ontology::Builder builder(fileName);
    buildTree(builder, literal);
    if (count)
        builder.count(trim);
    builder.build();
}

} // namespace Test
} // namespace Sorvik
