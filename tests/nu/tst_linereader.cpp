#include "nu/linereader.h"
#include "tests/support/fixtures.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QtTest>

using nu::LineReader;

namespace {

// Gives its data like a pipe (no size, no seeking), then its end or, failing, an error as a disk
// would.
class PipeDevice : public QIODevice
{
public:
    explicit PipeDevice(const QByteArray& content, bool failing = false)
        : data(content)
        , failAtEnd(failing)
    {
        open(ReadOnly);
    }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* out, qint64 maxSize) override
    {
        if (data.isEmpty() && failAtEnd) {
            setErrorString(QStringLiteral("Input/output error"));
            return -1;
        }
        const int n = int(qMin<qint64>(maxSize, data.size()));
        memcpy(out, data.constData(), size_t(n));
        data.remove(0, n);
        return n;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray data;
    bool failAtEnd;
};

// "number:text" per line, "number:<too long>" for a line read past.
QStringList readAll(LineReader& lines)
{
    QStringList result;
    while (lines.next()) {
        // The bytes handed out undecoded are the line's text, asked for first or not.
        const std::string_view bytes = lines.getBytes();
        const QString fromBytes = QString::fromUtf8(bytes.data(), int(bytes.size()));
        if (fromBytes != lines.getLine())
            result << QStringLiteral("bytes differ: ") + fromBytes;
        result << QStringLiteral("%1:%2").arg(lines.getLineNumber()).arg(lines.isTooLong() ? QStringLiteral("<too long>") : lines.getLine());
    }
    return result;
}

QStringList readAll(const QByteArray& content, int maxLength, bool pipe)
{
    PipeDevice pipeDevice(content);
    QBuffer fileBuffer;
    fileBuffer.setData(content);
    fileBuffer.open(QIODevice::ReadOnly);
    LineReader lines(pipe ? static_cast<QIODevice&>(pipeDevice) : fileBuffer);
    if (pipe && lines.getSize() != -1)
        return {QStringLiteral("a pipe has a size")};
    if (maxLength > 0)
        lines.setMaxLineLength(maxLength);
    return readAll(lines);
}

} // namespace

class TestLineReader : public QObject
{
    Q_OBJECT
private slots:
    void lines_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("maxLength");
        QTest::addColumn<QStringList>("expected");

        QTest::newRow("lf and crlf alike") << QByteArray("a\r\nb\nc\r\n") << 0 << QStringList{"1:a", "2:b", "3:c"};
        QTest::newRow("last line without line end") << QByteArray("a\nb") << 0 << QStringList{"1:a", "2:b"};
        QTest::newRow("empty input") << QByteArray() << 0 << QStringList();
        QTest::newRow("one line end is one empty line") << QByteArray("\n") << 0 << QStringList{"1:"};
        QTest::newRow("blank lines keep their numbers") << QByteArray("a\n\n\r\nb\n") << 0
                                                        << QStringList{"1:a", "2:", "3:", "4:b"};
        QTest::newRow("carriage return inside a line stays") << QByteArray("a\rb\n") << 0 << QStringList{"1:a\rb"};
        QTest::newRow("carriage return at the very end") << QByteArray("a\r") << 0 << QStringList{"1:a"};
        // A second mark comes from files joined with cat.
        QTest::newRow("byte order marks dropped")
            << QByteArray("\xef\xbb\xbf" "a\n\xef\xbb\xbf" "b") << 0 << QStringList{"1:a", "2:b"};
        QTest::newRow("utf-8") << QByteArray("Escherichia c\xc3\xb4li\n") << 0 << QStringList{QStringLiteral("1:Escherichia c\u00f4li")};
        QTest::newRow("broken utf-8") << QByteArray("a\xff\n") << 0 << QStringList{QStringLiteral("1:a\ufffd")};
        QTest::newRow("nul bytes kept") << QByteArray("a\0b\n", 4) << 0 << QStringList{QStringLiteral("1:a") + QChar(0) + "b"};
        QTest::newRow("line at the limit kept, one more byte is too long")
            << QByteArray("abcd\nabcde\nab") << 4 << QStringList{"1:abcd", "2:<too long>", "3:ab"};
        QTest::newRow("limit does not count the line end") << QByteArray("abcd\r\nabcd") << 4 << QStringList{"1:abcd", "2:abcd"};
        QTest::newRow("too long last line") << QByteArray("ab\nabcdefgh") << 4 << QStringList{"1:ab", "2:<too long>"};
        QTest::newRow("too long line over many reads is one line")
            << QByteArray(300000, 'x') + "\nok\n" + QByteArray(200000, 'y') << 1000
            << QStringList{"1:<too long>", "2:ok", "3:<too long>"};
        QTest::newRow("long line under the limit over many reads")
            << QByteArray(200000, 'x') + "\n" << 300000 << QStringList{"1:" + QString(200000, QLatin1Char('x'))};
    }

    // Every row reads the same from a file or a pipe, plain or gzip-compressed.
    void lines()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, maxLength);
        QFETCH(QStringList, expected);
        QCOMPARE(readAll(content, maxLength, false), expected);
        QCOMPARE(readAll(content, maxLength, true), expected);
        const QByteArray compressed = Sorvik::Test::gzipped(content);
        QCOMPARE(readAll(compressed, maxLength, false), expected);
        QCOMPARE(readAll(compressed, maxLength, true), expected);
    }

    void concatenatedGzipMembers()
    {
        const QByteArray content = Sorvik::Test::gzipped("a\nb") + Sorvik::Test::gzipped("") + Sorvik::Test::gzipped("\nc\n");
        QCOMPARE(readAll(content, 0, true), (QStringList{"1:a", "2:b", "3:c"}));
    }

    void damagedGzip_data()
    {
        QTest::addColumn<QByteArray>("content");
        const QByteArray good = Sorvik::Test::gzipped(QByteArray("9606\t12\n562\t3\n").repeated(1000));
        QByteArray corrupt = good;
        for (int i = 20; i < 40; ++i)
            corrupt[i] = char(corrupt.at(i) ^ 0x5a);
        QTest::newRow("cut short") << good.left(good.size() - 12);
        QTest::newRow("magic bytes only") << QByteArray("\x1f\x8b");
        QTest::newRow("damaged in the middle") << corrupt;
        QTest::newRow("damaged checksum") << good.left(good.size() - 8) + QByteArray(8, '\0');
        QTest::newRow("garbage after the data") << good + "trailing text";
    }

    // A damaged compressed file is an error the caller hears of, never a shorter file.
    void damagedGzip()
    {
        QFETCH(QByteArray, content);
        QBuffer buffer(&content);
        buffer.open(QIODevice::ReadOnly);
        LineReader lines(buffer);
        QVERIFY(lines.isOpen());
        QVERIFY(lines.isCompressed());
        try {
            while (lines.next()) {
            }
            QFAIL("no read error");
        } catch (const LineReader::ReadException& e) {
            QVERIFY(!e.getReason().isEmpty());
        }
    }

    void readErrorStopsReading()
    {
        PipeDevice device("a\nb\nc", true);
        LineReader lines(device);
        QVERIFY(lines.next());
        QCOMPARE(lines.getLine(), QStringLiteral("a"));
        QVERIFY(lines.next());
        QCOMPARE(lines.getLine(), QStringLiteral("b"));
        // "c" may be a longer line still: it is not handed out as a whole line.
        QVERIFY_EXCEPTION_THROWN(lines.next(), LineReader::ReadException);
    }

    void files_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("compress");
        QTest::newRow("gzip without .gz") << "counts.txt" << true;
        QTest::newRow("plain text named .gz") << "counts.txt.gz" << false;
        QTest::newRow("gzip named .gz") << "counts.txt.gz" << true;
    }

    // The bytes decide what a file is; size and position are the file's own bytes.
    void files()
    {
        QFETCH(QString, name);
        QFETCH(bool, compress);
        QTemporaryDir dir;
        const QByteArray text = QByteArray("9606\t12\n").repeated(50000);
        const QByteArray content = compress ? Sorvik::Test::gzipped(text) : text;
        QFile file(dir.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();

        LineReader lines(file.fileName());
        QVERIFY(lines.isOpen());
        QCOMPARE(lines.isCompressed(), compress);
        QCOMPARE(lines.getSize(), qint64(content.size()));
        qint64 count = 0;
        qint64 lastPosition = 0;
        while (lines.next()) {
            QCOMPARE(lines.getLine(), QStringLiteral("9606\t12"));
            QVERIFY(lines.getPosition() >= lastPosition && lines.getPosition() <= content.size());
            lastPosition = lines.getPosition();
            ++count;
        }
        QCOMPARE(count, qint64(50000));
        QCOMPARE(lines.getPosition(), qint64(content.size()));
    }

    void cutShortFileNamedInTheError()
    {
        QTemporaryDir dir;
        QFile file(dir.filePath(QStringLiteral("reads.txt.gz")));
        const QByteArray content = Sorvik::Test::gzipped("1\n2\n3\n").chopped(5);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        LineReader lines(file.fileName());
        try {
            while (lines.next()) {
            }
            QFAIL("no read error");
        } catch (const LineReader::ReadException& e) {
            const QString message = QString::fromUtf8(e.what());
            QVERIFY2(message.contains(file.fileName()) && message.contains(QLatin1String("ends early")), e.what());
        }
    }

    void unopenable_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("missing") << "missing";
        QTest::newRow("folder") << "folder";
    }

    void unopenable()
    {
        QFETCH(QString, kind);
        QTemporaryDir dir;
        LineReader lines(kind == QLatin1String("folder") ? dir.path() : dir.filePath(QStringLiteral("missing.txt")));
        QVERIFY(!lines.isOpen());
        QVERIFY(!lines.getErrorString().isEmpty());
        QVERIFY(!lines.next());
    }
};

QTEST_GUILESS_MAIN(TestLineReader)
#include "tst_linereader.moc"
