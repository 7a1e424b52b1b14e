#include "ontology/buildersource.h"

#include "ontology/nodekeys.h"
#include "ontology/pathids.h"
#include "ontology/source.h"

#include <climits>

namespace Zem {
namespace Ontology {

BuilderSource::BuilderSource(const QString& fileName, QObject* parent)
    : Builder(fileName, parent)
{
}

BuilderSource::~BuilderSource() = default;

void BuilderSource::addSource(std::unique_ptr<Source> source)
{
    if (source)
        sources.push_back(std::move(source));
}

void BuilderSource::addSample(const QString& name, std::unique_ptr<Source> source)
{
    if (source)
        sampleSources.emplace_back(samples.add(name), std::move(source));
}

void BuilderSource::setSampleStep(std::function<void(BuilderSource&)> step)
{
    sampleStep = std::move(step);
}

void BuilderSource::load()
{
    int index = 0;
    for (const auto& source : sources) {
        emit signalSourceReadingStart(index++, source->getDescription());
        source->read(*this);
    }
    // One sample keeps its counts in the nodes, as a chart of one input always has.
    const bool apart = sampleSources.size() > 1;
    setKeepFirstParent(apart);
    for (const auto& [sample, source] : sampleSources) {
        emit signalSourceReadingStart(index++, source->getDescription());
        source->read(*this);
        if (sampleStep)
            sampleStep(*this);
        if (apart)
            samples.take(sample, *this);
    }
}

void BuilderSource::count(bool trim)
{
    severalSamples = samples.size() > 1;
    if (!severalSamples) {
        // A single sample given by a source of samples (one chart merged) is a plain chart.
        if (samples.size() == 1 && sampleSources.empty())
            samples.restore(0, *this);
        Builder::count(trim);
        total = rootTotal();
        return;
    }
    samples.makeNamesUnique();
    samples.putSums(*this);
    Builder::count(trim);
    total = rootTotal();
    samples.putFirst(*this);
}

qint64 BuilderSource::rootTotal() const
{
    const QString* text = getRoot() ? getRoot()->data.find(NodeKey::accumCount) : nullptr;
    return text ? text->toLongLong() : 0;
}

void BuilderSource::writeExtras(QSqlDatabase& database)
{
    if (!severalSamples)
        return;
    if (!ChartSamples::write(database, samples.encode(*this)))
        throw StatementExecException();
}

void BuilderSource::rowWritten(const Node& node, int row)
{
    if (severalSamples)
        samples.noteRow(node, row);
}

BuildReport BuilderSource::getReport() const
{
    BuildReport report;
    std::vector<const Source*> all;
    for (const auto& source : sources)
        all.push_back(source.get());
    for (const auto& sample : sampleSources)
        all.push_back(sample.second.get());
    for (const Source* source : all) {
        BuildReport read;
        read.linesRead = source->getLinesRead();
        read.linesSkipped = source->getLinesSkipped();
        read.firstSkip = source->getFirstSkip();
        read.warnings = source->getWarnings();
        report.add(read);
    }
    return report;
}

PathIds& BuilderSource::getPathIds()
{
    if (!pathIds)
        pathIds = std::make_unique<PathIds>(*this);
    return *pathIds;
}

void BuilderSource::notifySourceTotalSize(qint64 total)
{
    positionShift = 0;
    while ((total >> positionShift) > INT_MAX)
        ++positionShift;
    timer.restart(static_cast<int>((total >> positionShift) / 200));
    emit signalSourceTotalSize(total);
}

void BuilderSource::notifySourceCurrentPos(qint64 position)
{
    if (timer.isTime(static_cast<int>(qBound<qint64>(0, position >> positionShift, INT_MAX))))
        emit signalSourceCurrentPos(position);
}

} // namespace Ontology
} // namespace Zem
