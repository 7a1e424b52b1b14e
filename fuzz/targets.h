#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// What each fuzzing harness does with one input: the reader of user files it is named after, as
// the program runs it. Shared by the harnesses and by the unit test that replays the inputs that
// once crashed, so both run exactly the same code. Every reader must survive any input: the
// errors it reports through its own exceptions are fine, anything else is a fault.
namespace Sorvik {
namespace Fuzz {

// frequencies, mgtaxa, krona, qiime, bcp, taxdump, chartfile, ontology, linereader, detect, samples, and
// the classifier formats kreport, bracken, metaphlan, kraken-reads, kaiju and centrifuge, and the
// tables of samples kreport-combined, metaphlan-merged and bracken-combined.
QStringList getTargetNames();

// Runs the named target on one input; false for an unknown name.
bool run(const QString& target, const QByteArray& data);

// Seeds that cannot be copied from files as they are (ZIP archives of the dumps, ontology files),
// written into folder; the real data beside the checkout is used when it is there.
void writeSeeds(const QString& target, const QString& folder);

} // namespace Fuzz
} // namespace Sorvik
