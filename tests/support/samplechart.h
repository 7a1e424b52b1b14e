#pragma once

#include <QList>
#include <QPair>
#include <QString>

namespace Sorvik {
namespace Test {

// Builds a chart of several samples, one for each (name, Krona text) pair: each text is written
// beside the chart (as NAME.krona.txt) and read as that sample's input, as sorvik-cli build does.
// One pair gives a chart of one sample. Throws what building throws.
void writeSampleChart(const QString& fileName, const QList<QPair<QString, QString>>& samples);

} // namespace Test
} // namespace Sorvik
