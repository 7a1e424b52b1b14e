#pragma once

#include "ontology/builder.h"
#include "ontology/buildreport.h"
#include "ontology/source.h"

#include <memory>
#include <vector>

namespace Zem {
namespace Ontology {

class PathIds;

// A builder that loads its tree from a list of sources, one after the other, and reports how far
// it has read each of them.
class BuilderSource : public Builder
{
    Q_OBJECT
public:
    explicit BuilderSource(const QString& fileName, QObject* parent = nullptr);
    ~BuilderSource() override;

    void addSource(std::unique_ptr<Source> source);
    virtual void load();
    // What the sources read and passed over, all together.
    BuildReport getReport() const;

    // The nodes of the path sources (Krona, QIIME) loaded into this builder: one table for all of
    // them, so that one path is one node whichever file it comes from, and an id is never given
    // to two paths.
    PathIds& getPathIds();

    // Sources announce the size of what they read (bytes, nodes), then their position in it.
    void notifySourceTotalSize(qint64 total);
    void notifySourceCurrentPos(qint64 position);

signals:
    void signalSourceReadingStart(int index, const QString& description);
    void signalSourceTotalSize(qint64 total);
    void signalSourceCurrentPos(qint64 position);

private:
    std::vector<std::unique_ptr<Source>> sources;
    std::unique_ptr<PathIds> pathIds;
    // Positions past the range of an int are scaled down by this many bits for the throttle.
    int positionShift = 0;
};

} // namespace Ontology
} // namespace Zem
