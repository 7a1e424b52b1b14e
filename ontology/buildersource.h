#pragma once

#include "ontology/builder.h"
#include "ontology/buildreport.h"
#include "ontology/samplecounts.h"
#include "ontology/source.h"

#include <functional>
#include <memory>
#include <vector>

namespace Zem {
namespace Ontology {

class PathIds;

// A builder that loads its tree from a list of sources, one after the other, and reports how far
// it has read each of them.
//
// Several samples: addSample() for each (a name and the source of its counts, e.g. from
// InputFormat::makeSource), after the sources of a shared tree, if any, given with addSource().
// With more than one sample, each sample's counts are taken apart as soon as its source is read,
// and the chart is written with a samples table; with one, it is the chart that source alone
// makes.
class BuilderSource : public Builder
{
    Q_OBJECT
public:
    explicit BuilderSource(const QString& fileName, QObject* parent = nullptr);
    ~BuilderSource() override;

    void addSource(std::unique_ptr<Source> source);
    void addSample(const QString& name, std::unique_ptr<Source> source);
    // Run on the builder after each sample's source is read, before its counts are taken apart:
    // where counts are moved (ids placed in the taxonomy).
    void setSampleStep(std::function<void(BuilderSource&)> step);
    // The samples, for sources that give counts of several samples themselves.
    SampleCounts& getSamples() { return samples; }
    virtual void load();
    // Counts every sample (see SampleCounts).
    void count(bool trim) override;
    // Once counted: what all samples hold together (the root's total for one sample).
    qint64 getTotal() const { return total; }
    // What the sources read and passed over, all together.
    BuildReport getReport() const;

    // The nodes of the path sources (Krona, QIIME) loaded into this builder: one table for all of
    // them, so that one path is one node whichever file it comes from, and an id is never given
    // to two paths.
    PathIds& getPathIds();

    // Sources announce the size of what they read (bytes, nodes), then their position in it.
    void notifySourceTotalSize(qint64 total);
    void notifySourceCurrentPos(qint64 position);

protected:
    void writeExtras(QSqlDatabase& database) override;
    void rowWritten(const Node& node, int row) override;

signals:
    void signalSourceReadingStart(int index, const QString& description);
    void signalSourceTotalSize(qint64 total);
    void signalSourceCurrentPos(qint64 position);

private:
    qint64 rootTotal() const;

    std::vector<std::unique_ptr<Source>> sources;
    // Sources of samples, with their sample numbers.
    std::vector<std::pair<int, std::unique_ptr<Source>>> sampleSources;
    std::function<void(BuilderSource&)> sampleStep;
    SampleCounts samples;
    bool severalSamples = false;
    qint64 total = 0;
    std::unique_ptr<PathIds> pathIds;
    // Positions past the range of an int are scaled down by this many bits for the throttle.
    int positionShift = 0;
};

} // namespace Ontology
} // namespace Zem
