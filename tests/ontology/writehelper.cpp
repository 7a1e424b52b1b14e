// Writes a large flat ontology to the file given as first argument, so that a test can kill the
// process while the file is being written.
#include "ontology/builder.h"

#include <QCoreApplication>

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    if (argc < 3)
        return 2;
    const int nodes = QString::fromLocal8Bit(argv[2]).toInt();
    Zem::Ontology::Builder builder(QString::fromLocal8Bit(argv[1]));
    builder.addRoot(QStringLiteral("1"));
    for (int i = 2; i <= nodes; ++i) {
        const QString id = QString::number(i);
        builder.addChild(QString::number(i / 2), id);
        builder.addData(id, QStringLiteral("scientific name"), QStringLiteral("Taxon number ") + id);
    }
    builder.build();
    return 0;
}
