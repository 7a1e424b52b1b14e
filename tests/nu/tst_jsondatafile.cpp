#include "nu/jsondatafile.h"
#include "tests/support/fixtures.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <sys/resource.h>

using nu::JsonDataFile;

namespace {

const QString descriptor = QStringLiteral("sorvik-piechart");

JsonDataFile::Info info(const QString& path)
{
    return JsonDataFile::Info(path, descriptor, 1);
}

QJsonArray someItems(int count)
{
    QJsonArray items;
    for (int i = 1; i <= count; ++i)
        items.append(QJsonObject{{"id", i}, {"parent-id", 0}, {"type", 6}, {"data", QJsonObject{{"text", "item"}}}});
    return items;
}

// Files larger than the limit cannot be written by this process while it lives.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &saved);
        previousHandler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit = saved;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &saved);
        std::signal(SIGXFSZ, previousHandler);
    }

private:
    rlimit saved{};
    void (*previousHandler)(int) = nullptr;
};

} // namespace

class TestJsonDataFile : public QObject
{
    Q_OBJECT
private slots:
    void read_data();
    void read();
    void unreadableFiles_data();
    void unreadableFiles();
    void saveWritesTheIndentedEnvelope();
    void failedSaveKeepsTheFileTheUserHad();
};

void TestJsonDataFile::read_data()
{
    QTest::addColumn<QString>("fixture");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("outcome");
    QTest::addColumn<int>("items");

    const QByteArray envelope = R"({"descriptor": "sorvik-piechart", "version": %1, "data": %2})";
    auto file = [&](const char* version, const char* data) {
        return QByteArray(envelope).replace("%1", version).replace("%2", data);
    };
    QTest::newRow("empty chart") << "chart/empty.pie" << QByteArray() << "read" << 0;
    QTest::newRow("version 2") << "chart/version2.pie" << QByteArray() << "version" << 0;
    QTest::newRow("other kind of file") << "chart/other-descriptor.pie" << QByteArray() << "descriptor" << 0;
    QTest::newRow("two items") << "" << file("1", R"([{"type": 6}, {"type": 7}])") << "read" << 2;
    QTest::newRow("data not an array") << "" << file("1", "{}") << "read" << 0;
    QTest::newRow("empty file") << "" << QByteArray() << "descriptor" << 0;
    QTest::newRow("binary") << "" << QByteArray("\x00\xff\xfe{\x01", 5) << "descriptor" << 0;
    QTest::newRow("nested too deep") << "" << QByteArray(100000, '[') << "descriptor" << 0;
    QTest::newRow("version huge") << "" << file("1e300", "[]") << "version" << 0;
    QTest::newRow("version fractional") << "" << file("1.5", "[]") << "version" << 0;
}

void TestJsonDataFile::read()
{
    QFETCH(QString, fixture);
    QFETCH(QByteArray, content);
    QFETCH(QString, outcome);
    QFETCH(int, items);

    QTemporaryDir folder;
    QString path = Sorvik::Test::fixturePath(fixture);
    if (fixture.isEmpty()) {
        path = folder.filePath(QStringLiteral("chart.pie"));
        QCOMPARE(Sorvik::Test::writeFile(path, content), path);
    }
    QString result = QStringLiteral("read");
    try {
        const JsonDataFile file(info(path));
        QCOMPARE(file.descriptor(), descriptor);
        QCOMPARE(file.version(), 1);
        QCOMPARE(file.data().size(), items);
    } catch (const JsonDataFile::WrongDescriptorException&) {
        result = QStringLiteral("descriptor");
    } catch (const JsonDataFile::DifferentVersionException&) {
        result = QStringLiteral("version");
    }
    QCOMPARE(result, outcome);
}

void TestJsonDataFile::unreadableFiles_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("saveFails");
    QTest::newRow("missing") << "missing.pie" << false;
    QTest::newRow("in a missing folder") << "nowhere/chart.pie" << true;
    QTest::newRow("a folder") << "" << true;
}

void TestJsonDataFile::unreadableFiles()
{
    QFETCH(QString, name);
    QFETCH(bool, saveFails);
    QTemporaryDir folder;
    const QString path = folder.filePath(name);
    QVERIFY_EXCEPTION_THROWN(JsonDataFile(info(path)), JsonDataFile::FileOpenException);
    if (saveFails)
        QVERIFY_EXCEPTION_THROWN(JsonDataFile::save(info(path), someItems(1)), JsonDataFile::FileOpenException);
}

void TestJsonDataFile::saveWritesTheIndentedEnvelope()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("chart.pie"));
    const QJsonArray items = someItems(2);
    JsonDataFile::save(info(path), items);

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    const QJsonObject expected{{"descriptor", descriptor}, {"version", 1}, {"data", items}};
    QCOMPARE(content, QJsonDocument(expected).toJson(QJsonDocument::Indented));

    const JsonDataFile read(info(path));
    QCOMPARE(read.data(), items);
}

void TestJsonDataFile::failedSaveKeepsTheFileTheUserHad()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("chart.pie"));
    JsonDataFile::save(info(path), someItems(1));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    file.close();

    {
        const FileSizeLimit limit(before.size() * 2);
        QVERIFY_EXCEPTION_THROWN(JsonDataFile::save(info(path), someItems(50)), JsonDataFile::FileOpenException);
    }
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), before);
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList{"chart.pie"});
}

QTEST_MAIN(TestJsonDataFile)
#include "tst_jsondatafile.moc"
