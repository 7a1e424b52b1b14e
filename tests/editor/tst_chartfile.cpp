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

QTEST_MAIN(TestChartFile)
#include "tst_chartfile.moc"
