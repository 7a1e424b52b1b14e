#include "tests/support/fixtures.h"
#include "viewer/taxonname.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTextStream>
#include <QtTest>

using Sorvik::Viewer::TaxonName;

class TestTaxonName : public QObject
{
    Q_OBJECT
private slots:
    void cleanNames_data()
    {
        QTest::addColumn<QString>("raw");
        QTest::addColumn<QString>("clean");
        QTest::addColumn<bool>("emptyRank");
        // Prefixes as the real files write them.
        QTest::newRow("domain") << "d__Eukaryota" << "Eukaryota" << false;
        QTest::newRow("two-letter rank") << "sg__TSAR" << "TSAR" << false;
        QTest::newRow("three-letter rank, underscore in the name") << "sdv__Chloroflexi_X" << "Chloroflexi X" << false;
        QTest::newRow("brackets kept") << "o__Absconditabacteriales_(SR1)" << "Absconditabacteriales (SR1)" << false;
        QTest::newRow("qiime reader's form") << "k  Bacteria" << "Bacteria" << false;
        QTest::newRow("qiime reader's bracketed name") << "o  [Saprospirales]" << "[Saprospirales]" << false;
        // Empty ranks: nothing but the prefix.
        QTest::newRow("empty rank") << "g__" << "" << true;
        QTest::newRow("qiime's empty rank") << "g" << "" << true;
        QTest::newRow("empty rank with a blank") << "s__ " << "" << true;
        // Not prefixes.
        QTest::newRow("plain name") << "Bacteroidetes/Chlorobi group" << "Bacteroidetes/Chlorobi group" << false;
        QTest::newRow("underscores only") << "uncultured_bacterium" << "uncultured bacterium" << false;
        QTest::newRow("long word before two underscores") << "Clostridium__sensu" << "Clostridium sensu" << false;
        QTest::newRow("capital before two underscores") << "K__Bacteria" << "K Bacteria" << false;
        QTest::newRow("five letters is no rank") << "abcde__x" << "abcde x" << false;
        QTest::newRow("a letter and one blank") << "k Bacteria" << "k Bacteria" << false;
        QTest::newRow("empty") << "" << "" << false;
    }

    void cleanNames()
    {
        QFETCH(QString, raw);
        QFETCH(QString, clean);
        QFETCH(bool, emptyRank);
        QCOMPARE(TaxonName::clean(raw), clean);
        QCOMPARE(TaxonName::isEmptyRank(raw), emptyRank);
    }

    void unassignedNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("unassigned");
        QTest::newRow("unclassified") << "unclassified" << true;
        QTest::newRow("any case") << "Unclassified" << true;
        QTest::newRow("unknown ids") << "Unknown taxon ids" << true;
        // A real taxon of that name holds classified reads.
        QTest::newRow("unclassified of a taxon") << "unclassified Bacteria" << false;
        QTest::newRow("a taxon") << "Bacteria" << false;
    }

    void unassignedNames()
    {
        QFETCH(QString, name);
        QFETCH(bool, unassigned);
        QCOMPARE(TaxonName::isUnassigned(name), unassigned);
    }

    // Every name of the real Krona and QIIME files comes out without a rank prefix.
    void realFilesLoseTheirPrefixes()
    {
        const QString real = Sorvik::Test::realDataPath();
        if (real.isEmpty())
            QSKIP("no real data beside the checkout");
        const QRegularExpression prefix(QStringLiteral("^[a-z]{1,4}(__|  )"));
        int names = 0;
        for (const QString& type : {QStringLiteral("krona"), QStringLiteral("qiime")}) {
            const QDir folder(QDir(real).filePath(type));
            for (const QString& name : folder.entryList(QDir::Files)) {
                QFile file(folder.filePath(name));
                QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
                QTextStream in(&file);
                while (!in.atEnd()) {
                    const QStringList fields = in.readLine().split(QLatin1Char('\t'));
                    // Krona: the names after the count; QIIME: the path in the first column.
                    const QStringList parts = type == QLatin1String("krona") ? fields.mid(1)
                                                                            : fields.first().split(QLatin1Char(';'));
                    for (const QString& part : parts) {
                        const QString clean = TaxonName::clean(part);
                        QVERIFY2(!prefix.match(clean).hasMatch(), qPrintable(part));
                        QVERIFY2(!clean.contains(QLatin1Char('_')), qPrintable(part));
                        ++names;
                    }
                }
            }
        }
        QVERIFY(names > 1000);
    }
};

QTEST_MAIN(TestTaxonName)
#include "tst_taxonname.moc"
