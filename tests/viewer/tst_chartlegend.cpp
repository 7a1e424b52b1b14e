#include "ontology/ontology.h"
#include "tests/support/treeliteral.h"
#include "viewer/chartlegend.h"
#include "viewer/charttree.h"
#include "viewer/colourmap.h"
#include "viewer/palette.h"

#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QtTest>

using Sorvik::Viewer::ChartLegend;
using Sorvik::Viewer::ChartTree;
using Sorvik::Viewer::ColourMap;
using Sorvik::Viewer::Palette;

class TestChartLegend : public QObject
{
    Q_OBJECT
private slots:
    void rows_data()
    {
        QTest::addColumn<QString>("tree");
        QTest::addColumn<QString>("rows");
        // Largest first, names cleaned, shares of the whole chart.
        QTest::newRow("first branching level")
            << "r(b=\"d__Bacteria\"(f=\"p__Firmicutes\":30 x=\"p__Bacteroidetes\":50) a=\"d__Archaea\":20)"
            << "Bacteria 80;Archaea 20";
        // Bacteria with 92 %: the level goes on below it, beside its small sibling.
        QTest::newRow("below a dominant taxon")
            << "r(b=\"d__Bacteria\"(f=\"p__Firmicutes\":40 x=\"p__Bacteroidetes\":52) a=\"d__Archaea\":8)"
            << "Bacteroidetes 52;Firmicutes 40;Archaea 8";
        // Unclassified reads are not a level of their own.
        QTest::newRow("below a chain") << "r(u=unclassified:50 c(a:30 b:20))" << "a 30;b 20";
        QTest::newRow("a disc") << "r:5" << "";
    }

    void rows()
    {
        QFETCH(QString, tree);
        QFETCH(QString, rows);
        const ChartTree chart = read(tree);
        const ColourMap colours = ColourMap::assign(chart, Palette());
        const ChartLegend legend = ChartLegend::of(chart, colours);
        QStringList got;
        for (const ChartLegend::Row& row : legend.getRows()) {
            got << QStringLiteral("%1 %2").arg(row.name).arg(row.share);
            // The swatch is the taxon's colour in the chart.
            bool found = false;
            for (int i = 0; i < chart.size(); ++i)
                found = found || (chart.getName(i) == row.name && colours.colourOf(i) == row.colour);
            QVERIFY2(found, qPrintable(row.name));
        }
        QCOMPARE(got.join(QLatin1Char(';')), rows);
    }

    void manyTaxaEndInOneRow()
    {
        QString literal = QStringLiteral("r(");
        for (int i = 1; i <= ChartLegend::maximumRows + 4; ++i)
            literal += QStringLiteral(" t%1:%1").arg(i);
        const ChartTree chart = read(literal + QLatin1Char(')'));
        const ChartLegend legend = ChartLegend::of(chart, ColourMap::assign(chart, Palette()));
        QCOMPARE(int(legend.getRows().size()), ChartLegend::maximumRows);
        QCOMPARE(legend.getRows().front().name, QStringLiteral("t%1").arg(ChartLegend::maximumRows + 4));
        // The five smallest: t1 to t5, 15 reads of 210.
        QCOMPARE(legend.getRows().back().name, QStringLiteral("5 others"));
        QVERIFY(std::abs(legend.getRows().back().share - 1500.0 / 210) < 1e-9);
    }

    void sharesAreFormattedForReading_data()
    {
        QTest::addColumn<double>("share");
        QTest::addColumn<QString>("text");
        QTest::newRow("large") << 55.4 << "55 %";
        QTest::newRow("ten") << 10.0 << "10 %";
        QTest::newRow("small") << 6.84 << "6.8 %";
        QTest::newRow("tiny") << 0.064 << "0.06 %";
        QTest::newRow("rounds to the smallest shown") << 0.005 << "0.01 %";
        QTest::newRow("below what two decimals show") << 0.0049 << "< 0.01 %";
        QTest::newRow("none") << 0.0 << "0.00 %";
    }

    void sharesAreFormattedForReading()
    {
        QFETCH(double, share);
        QFETCH(QString, text);
        QCOMPARE(ChartLegend::formatShare(share), text);
    }

    void drawsEveryRow()
    {
        const ChartLegend legend({{Qt::red, QStringLiteral("Firmicutes"), 60}, {Qt::blue, QStringLiteral("Bacteroidetes"), 40}});
        const QSizeF size = legend.getSize();
        QVERIFY(size.width() > 0 && size.height() > 0);
        QImage image(size.toSize() + QSize(2, 2), QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        legend.paint(painter, QPointF());
        painter.end();
        // The two swatches, one above the other at the left.
        const int x = static_cast<int>(size.height() / 4);
        QCOMPARE(image.pixelColor(x, static_cast<int>(size.height() / 4)), QColor(Qt::red));
        QCOMPARE(image.pixelColor(x, static_cast<int>(size.height() * 3 / 4)), QColor(Qt::blue));
        QVERIFY(ChartLegend().getSize().isEmpty());
    }

private:
    ChartTree read(const QString& literal)
    {
        const QString file = dir.filePath(QStringLiteral("chart%1.ontology").arg(++files));
        Sorvik::Test::writeTree(file, literal);
        return ChartTree::read(Zem::Ontology::Ontology(file));
    }

    QTemporaryDir dir;
    int files = 0;
};

QTEST_MAIN(TestChartLegend)
#include "tst_chartlegend.moc"
