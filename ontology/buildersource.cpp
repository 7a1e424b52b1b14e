#include "ontology/buildersource.h"

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

void BuilderSource::load()
{
    for (size_t i = 0; i < sources.size(); ++i) {
        emit signalSourceReadingStart(static_cast<int>(i), sources[i]->getDescription());
        sources[i]->read(*this);
    }
}

BuildReport BuilderSource::getReport() const
{
    BuildReport report;
    for (const auto& source : sources) {
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
