#include "tests/support/samplechart.h"

#include "ontology/buildersource.h"
#include "ontology/inputformat.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <stdexcept>

namespace Sorvik {
namespace Test {

void writeSampleChart(const QString& fileName, const QList<QPair<QString, QString>>& samples)
{
    const Zem::Ontology::InputFormat* krona = Zem::Ontology::InputFormat::find(QStringLiteral("krona"));
    if (!krona)
        throw std::runtime_error("no Krona format");
    const QDir folder = QFileInfo(fileName).absoluteDir();
    Zem::Ontology::BuilderSource builder(fileName);
    for (const auto& sample : samples) {
        const QString input = folder.filePath(sample.first + QStringLiteral(".krona.txt"));
        QFile file(input);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(sample.second.toUtf8()) < 0)
            throw std::runtime_error("input not written");
        file.close();
        builder.addSample(sample.first, krona->makeSource(input, Zem::Ontology::InputFormat::Options()));
    }
    builder.load();
    builder.count(false);
    builder.build();
}

} // namespace Test
} // namespace Sorvik
