#include "viewer/charthtml.h"

#include "viewer/charttree.h"
#include "viewer/colourmap.h"
#include "viewer/palette.h"

#include <QFile>
#include <QSaveFile>

#include <algorithm>
#include <cmath>

namespace Sorvik {
namespace Viewer {

namespace {

QByteArray resource(const QString& name)
{
    QFile file(QStringLiteral(":/html/") + name);
    if (!file.open(QIODevice::ReadOnly))
        throw ChartHtml::TemplateException();
    return file.readAll();
}

// The page's template with each "{{key}}" replaced; what is put in is not searched again.
QByteArray fill(const QByteArray& page, const std::vector<std::pair<QByteArray, QByteArray>>& values)
{
    QByteArray out;
    out.reserve(page.size() + [&] {
        int size = 0;
        for (const auto& value : values)
            size += value.second.size();
        return size;
    }());
    int from = 0;
    while (true) {
        const int open = page.indexOf("{{", from);
        const int close = open < 0 ? -1 : page.indexOf("}}", open);
        if (close < 0) {
            out += page.mid(from);
            return out;
        }
        const QByteArray key = page.mid(open + 2, close - open - 2);
        out += page.mid(from, open - from);
        bool found = false;
        for (const auto& value : values) {
            if (value.first == key) {
                out += value.second;
                found = true;
            }
        }
        if (!found)
            throw ChartHtml::TemplateException();
        from = close + 2;
    }
}

QByteArray htmlEscaped(const QString& text)
{
    return text.toHtmlEscaped().toUtf8();
}

void appendNumbers(QByteArray& out, const std::vector<qint64>& values, const std::vector<int>& order)
{
    out += '[';
    for (size_t i = 0; i < order.size(); ++i) {
        if (i > 0)
            out += ',';
        out += QByteArray::number(values[static_cast<size_t>(order[i])]);
    }
    out += ']';
}

} // namespace

const char* ChartHtml::TemplateException::what() const noexcept
{
    return "the page's script and style are not built into this program";
}

const char* ChartHtml::WriteException::what() const noexcept
{
    return "the page could not be written";
}

ChartHtml::ChartHtml(const ChartTree& t, const ColourMap& c)
    : tree(t)
    , colours(c)
{
}

void ChartHtml::setView(int levels, double percent, bool on)
{
    maxLevels = std::max(1, levels);
    minPercent = std::isfinite(percent) ? std::clamp(percent, 0.0, 100.0) : 0.5;
    collapse = on;
}

void ChartHtml::addSample(Sample sample)
{
    sample.counts.resize(static_cast<size_t>(tree.size()), 0);
    sample.totals.resize(static_cast<size_t>(tree.size()), 0);
    samples.push_back(std::move(sample));
}

void ChartHtml::addSamplesOf(const ChartTree& chart)
{
    if (chart.getSampleCount() < 2)
        return;
    const auto list = chart.getSamples();
    setFirstSampleName(list.front().name);
    for (size_t i = 1; i < list.size(); ++i) {
        Sample sample;
        sample.name = list[i].name;
        chart.getCounts(static_cast<int>(i), sample.counts, sample.totals);
        addSample(std::move(sample));
    }
}

std::vector<int> ChartHtml::depthFirst() const
{
    std::vector<int> order;
    if (tree.isEmpty())
        return order;
    order.reserve(static_cast<size_t>(tree.size()));
    std::vector<int> pending{0};
    while (!pending.empty()) {
        const int node = pending.back();
        pending.pop_back();
        order.push_back(node);
        const std::vector<int>& children = tree.at(node).children;
        pending.insert(pending.end(), children.rbegin(), children.rend());
    }
    return order;
}

QByteArray ChartHtml::jsonString(const QString& text)
{
    QByteArray out;
    out.reserve(text.size() + 2);
    out += '"';
    const QByteArray utf8 = text.toUtf8();
    for (const char c : utf8) {
        const auto u = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (u < 0x20 || c == '<' || c == '>' || c == '&') {
            out += "\\u00";
            out += QByteArray::number(u, 16).rightJustified(2, '0');
        } else {
            out += c;
        }
    }
    out += '"';
    return out;
}

QByteArray ChartHtml::getData() const
{
    const std::vector<int> order = depthFirst();
    QByteArray out;
    out.reserve(static_cast<int>(order.size()) * 40 + 256);
    const auto first = std::find(order.begin(), order.end(), centre);
    out += "{\"format\":1,\"title\":" + jsonString(title);
    out += ",\"view\":{\"maxLevels\":" + QByteArray::number(maxLevels) + ",\"minPercent\":"
           + QByteArray::number(minPercent, 'g', 10) + ",\"collapse\":" + (collapse ? "true" : "false")
           + ",\"centre\":" + QByteArray::number(first == order.end() ? 0 : int(first - order.begin())) + '}';
    out += ",\"greys\":{\"others\":" + jsonString(Palette::othersGrey().name()) + '}';
    out += ",\"names\":[";
    for (size_t i = 0; i < order.size(); ++i) {
        if (i > 0)
            out += ',';
        out += jsonString(tree.getName(order[i], rawNames));
    }
    out += "],\"children\":[";
    for (size_t i = 0; i < order.size(); ++i) {
        if (i > 0)
            out += ',';
        out += QByteArray::number(static_cast<qulonglong>(tree.at(order[i]).children.size()));
    }
    // Six hex digits a node: what the viewer paints it with.
    out += "],\"colours\":\"";
    const QColor context = Palette::contextGrey();
    for (const int node : order) {
        const QColor colour = colours.hasColour(node) ? colours.colourOf(node) : context;
        out += colour.name().toLatin1().mid(1);
    }
    out += "\",\"samples\":[";
    std::vector<qint64> counts(static_cast<size_t>(tree.size()));
    std::vector<qint64> totals(static_cast<size_t>(tree.size()));
    for (int node = 0; node < tree.size(); ++node) {
        counts[static_cast<size_t>(node)] = tree.at(node).count;
        totals[static_cast<size_t>(node)] = tree.at(node).total;
    }
    const auto sample = [&](const QString& name, const std::vector<qint64>& own, const std::vector<qint64>& all) {
        out += "{\"name\":" + jsonString(name) + ",\"counts\":";
        appendNumbers(out, own, order);
        out += ",\"totals\":";
        appendNumbers(out, all, order);
        out += '}';
    };
    sample(firstSample, counts, totals);
    for (const Sample& more : samples) {
        out += ',';
        sample(more.name, more.counts, more.totals);
    }
    out += "]}";
    return out;
}

QByteArray ChartHtml::toHtml() const
{
    const QString heading = title.isEmpty() ? QStringLiteral("Sorvik chart") : title;
    return fill(resource(QStringLiteral("chart.html")), {{"title", htmlEscaped(heading)},
                                                         {"style", resource(QStringLiteral("chart.css"))},
                                                         {"script", resource(QStringLiteral("chart.js"))},
                                                         {"data", getData()}});
}

void ChartHtml::save(const QString& fileName) const
{
    const QByteArray page = toHtml();
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        throw WriteException();
    if (file.write(page) != page.size()) {
        file.cancelWriting();
        throw WriteException();
    }
    if (!file.commit())
        throw WriteException();
}

} // namespace Viewer
} // namespace Sorvik
