#include "editor/scene.h"
#include "tests/support/fixtures.h"

#include <QTemporaryDir>
#include <QtTest>

using Sorvik::Edit::Scene;

class TestChartFile : public QObject
{
    Q_OBJECT
private slots:
    void loadedChartSavesByteForByte();
    void patternsRenamedInTheSheetKeepTheirNumbers_data();
    void patternsRenamedInTheSheetKeepTheirNumbers();
};

// The chart holds every item type of the editor, so every key and value encoding of the file
// format has to come back exactly: files saved by earlier builds must keep loading.
void TestChartFile::loadedChartSavesByteForByte()
{
    const QString fixture = Sorvik::Test::fixturePath(QStringLiteral("chart/annotated.pie"));
    Scene::ItemManager manager;
    Scene scene(manager);
    const nu::JsonDataFile file(Scene::getFileInfo(fixture));
    QCOMPARE(manager.fromJson(file.data()), 0);
    QCOMPARE(scene.items().size(), 11);

    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("again.pie"));
    nu::JsonDataFile::save(Scene::getFileInfo(path), manager.toJson());
    QCOMPARE(Sorvik::Test::fileContents(path), Sorvik::Test::fileContents(fixture));
}

void TestChartFile::patternsRenamedInTheSheetKeepTheirNumbers_data()
{
    QTest::addColumn<int>("style");
    QTest::newRow("backward diagonal") << int(Qt::BDiagPattern);
    QTest::newRow("forward diagonal") << int(Qt::FDiagPattern);
}

// The sheet's names of brush patterns changed; files hold the numbers, which must read as before.
void TestChartFile::patternsRenamedInTheSheetKeepTheirNumbers()
{
    QFETCH(int, style);
    QByteArray bytes = Sorvik::Test::fileContents(Sorvik::Test::fixturePath(QStringLiteral("chart/annotated.pie")));
    const QByteArray solid("\"fill.style\": 1,");
    QVERIFY(bytes.contains(solid));
    bytes.replace(bytes.indexOf(solid), solid.size(), "\"fill.style\": " + QByteArray::number(style) + ',');
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("patterns.pie"));
    QFile out(path);
    QVERIFY(out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size());
    out.close();

    Scene::ItemManager manager;
    Scene scene(manager);
    QCOMPARE(manager.fromJson(nu::JsonDataFile(Scene::getFileInfo(path)).data()), 0);
    const QString again = folder.filePath(QStringLiteral("again.pie"));
    nu::JsonDataFile::save(Scene::getFileInfo(again), manager.toJson());
    QCOMPARE(Sorvik::Test::fileContents(again), bytes);
}

QTEST_MAIN(TestChartFile)
#include "tst_chartfile.moc"
