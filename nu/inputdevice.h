#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QString>

#include <memory>

class QFile;

namespace nu {

// A read-only stream over a user's input file, a pipe or another device. Gzip data, recognised by
// its magic bytes whatever the file is called, is inflated on the fly, so a compressed file is
// never unpacked to disk or memory. Damaged or cut-short compressed data is a read error.
class InputDevice : public QIODevice
{
    Q_OBJECT
public:
    // Reads the named file; open() opens it.
    explicit InputDevice(const QString& fileName, QObject* parent = nullptr);
    // Reads source, which is open for reading and outlives this device.
    explicit InputDevice(QIODevice& source, QObject* parent = nullptr);
    ~InputDevice() override;

    // Only ReadOnly is accepted; Text is ignored (line ends are the reader's business).
    bool open(OpenMode mode) override;
    void close() override;
    bool isSequential() const override;
    bool atEnd() const override;
    qint64 bytesAvailable() const override;

    QString getFileName() const { return fileName; }
    bool isCompressed() const { return compressed; }
    // Bytes of the file (compressed as they are) read so far, and its size: -1 for a pipe.
    qint64 getSourcePosition() const { return sourcePosition; }
    qint64 getSourceSize() const;
    // A read failed (the device's error string says why); the data stops there.
    bool hasFailed() const { return failed; }

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    struct Inflater;

    // Tops up the raw input from the source; false at its end or on an error.
    bool fillInput();
    qint64 readPlain(char* data, qint64 maxSize);
    qint64 readCompressed(char* data, qint64 maxSize);
    qint64 fail(const QString& reason);

    QString fileName;
    std::unique_ptr<QFile> file;
    QIODevice* source = nullptr;
    std::unique_ptr<Inflater> inflater;
    // Raw bytes read from the source and not yet used, from inputStart on.
    QByteArray input;
    int inputStart = 0;
    qint64 sourcePosition = 0;
    bool sourceEnded = false;
    bool compressed = false;
    bool finished = false;
    bool failed = false;
};

} // namespace nu
