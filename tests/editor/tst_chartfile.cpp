#include "editor/scene.h"
#include "tests/support/editcharts.h"
#include "tests/support/fixtures.h"

#include <QFile>
#include <QGraphicsItem>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

using Sorvik::Edit::Scene;

namespace {

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString describe(const QRectF& rect)
{
    return QStringLiteral("%1 %2 %3 %4")
        .arg(rect.x(), 0, 'f', 6)
        .arg(rect.y(), 0, 'f', 6)
        .arg(rect.width(), 0, 'f', 6)
        .arg(rect.height(), 0, 'f', 6);
}

// Where every item of the scene is drawn, in the order the chart file lists them.
QStringList geometry(Scene::ItemManager& manager, Scene& scene)
{
    QStringList result;
    for (QGraphicsItem* item : scene.items(Qt::AscendingOrder)) {
        if (manager.findId(item))
            result << describe(item->sceneBoundingRect());
    }
    return result;
}

} // namespace

class TestChartFile : public QObject
{
    Q_OBJECT
private slots:
    void editorTypes();
    void savedChartLoadsAsItWas();
    void loadedChartSavesByteForByte();
    void keysAndEncodings_data();
    void keysAndEncodings();
};

void TestChartFile::editorTypes()
{
    Scene::ItemManager manager;
    QList<int> registered;
    for (int type = -1; type <= 10; ++type) {
        if (manager.isRegistered(type))
            registered << type;
    }
    QCOMPARE(registered, (QList<int>{1, 2, 5, 6, 7, 8}));
    const nu::JsonDataFile::Info info = Scene::getFileInfo(QStringLiteral("a.pie"));
    QCOMPARE(info.descriptor, QStringLiteral("sorvik-piechart"));
    QCOMPARE(info.version, 1);
}

void TestChartFile::savedChartLoadsAsItWas()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("annotated.pie"));
    Scene::ItemManager manager;
    Scene scene(manager);
    Sorvik::Test::addAnnotatedChart(manager);
    nu::JsonDataFile::save(Scene::getFileInfo(path), manager.toJson());

    const QJsonObject root = QJsonDocument::fromJson(contents(path)).object();
    QCOMPARE(root.keys(), (QStringList{"data", "descriptor", "version"}));
    QCOMPARE(root.value(QStringLiteral("descriptor")), QJsonValue("sorvik-piechart"));
    QCOMPARE(root.value(QStringLiteral("version")), QJsonValue(1));

    Scene::ItemManager loader;
    Scene loaded(loader);
    const nu::JsonDataFile file(Scene::getFileInfo(path));
    QCOMPARE(loader.fromJson(file.data()), 0);
    QCOMPARE(Sorvik::Test::normalizedItems(loader.toJson()), Sorvik::Test::normalizedItems(manager.toJson()));
    // The items are drawn where they were: parents and offsets came back in the right order.
    QCOMPARE(geometry(loader, loaded), geometry(manager, scene));
}

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
    QCOMPARE(contents(path), contents(fixture));
}

void TestChartFile::keysAndEncodings_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QStringList>("keys");

    const QStringList border{"border.color", "border.style", "border.width"};
    const QStringList fill{"fill.color", "fill.style"};
    const QStringList line{"line.color", "line.style", "line.width"};
    const QStringList position{"position.x", "position.y"};
    QTest::newRow("arc text") << 1
                              << border + fill + QStringList{"font", "orientation"} + position
                                     + QStringList{"radius", "rotation", "text"};
    QTest::newRow("labelled slice")
        << 2
        << border + QStringList{"count"} + fill + QStringList{"order"} + position
               + QStringList{"radius",         "rotation",       "text.brush.color", "text.brush.style", "text.font",
                             "text.pen.color", "text.pen.style", "text.pen.width",   "text.show",        "text.text"};
    QTest::newRow("arc bracket") << 5
                                 << QStringList{"angle"} + line + position
                                        + QStringList{"radius", "rotation", "tip-length"};
    QTest::newRow("straight text") << 6
                                   << QStringList{"anchor.horizontal", "anchor.vertical"} + border + fill
                                          + QStringList{"font"} + position + QStringList{"rotation", "text"};
    QTest::newRow("line") << 7 << QStringList{"end.x", "end.y", "ignoretransformations"} + line + position;
    QTest::newRow("subspace") << 8 << QStringList{"ignoretransformations"} + position + QStringList{"rotation"};
}

void TestChartFile::keysAndEncodings()
{
    QFETCH(int, type);
    QFETCH(QStringList, keys);

    Scene::ItemManager manager;
    Scene scene(manager);
    const auto item = manager.createItem(type);
    QVERIFY(item);
    const QJsonObject element = item->getJsonValue().toObject();
    QCOMPARE(element.value(QStringLiteral("type")), QJsonValue(type));
    const QJsonObject data = element.value(QStringLiteral("data")).toObject();
    QCOMPARE(data.keys(), keys);

    const QRegularExpression colour(QStringLiteral("^#[0-9a-f]{8}$"));
    for (auto value = data.begin(); value != data.end(); ++value) {
        const QString key = value.key();
        if (key.endsWith(QLatin1String("color"))) {
            QVERIFY2(colour.match(value->toString()).hasMatch(), qPrintable(key));
        } else if (key.endsWith(QLatin1String("font"))) {
            QFont font;
            QVERIFY2(font.fromString(value->toString()), qPrintable(key));
        } else if (key == QLatin1String("ignoretransformations") || key.endsWith(QLatin1String("show"))) {
            QVERIFY2(value->isBool(), qPrintable(key));
        } else if (key == QLatin1String("text") || key == QLatin1String("text.text")) {
            QVERIFY2(value->isString(), qPrintable(key));
        } else {
            QVERIFY2(value->isDouble(), qPrintable(key));
        }
    }
}

QTEST_MAIN(TestChartFile)
#include "tst_chartfile.moc"
