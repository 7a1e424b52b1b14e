#include "nu/inputdevice.h"

#include <QFile>

#include <zlib.h>

#include <algorithm>
#include <climits>

namespace nu {

namespace {

constexpr int inputChunkSize = 64 * 1024;

bool hasGzipMagic(const QByteArray& bytes)
{
    return bytes.size() >= 2 && uchar(bytes.at(0)) == 0x1f && uchar(bytes.at(1)) == 0x8b;
}

} // namespace

struct InputDevice::Inflater
{
    Inflater() { ok = inflateInit2(&stream, 16 + MAX_WBITS) == Z_OK; }
    ~Inflater()
    {
        if (ok)
            inflateEnd(&stream);
    }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    z_stream stream{};
    bool ok = false;
    // The current gzip member is complete; another may follow (concatenated files).
    bool memberEnded = false;
};

InputDevice::InputDevice(const QString& name, QObject* parent)
    : QIODevice(parent)
    , fileName(name)
{
}

InputDevice::InputDevice(QIODevice& device, QObject* parent)
    : QIODevice(parent)
    , source(&device)
{
}

InputDevice::~InputDevice() = default;

bool InputDevice::open(OpenMode mode)
{
    if ((mode & WriteOnly) || !(mode & ReadOnly) || isOpen())
        return false;
    if (!fileName.isEmpty() || !source) {
        file = std::make_unique<QFile>(fileName);
        if (!file->open(QIODevice::ReadOnly)) {
            setErrorString(file->errorString());
            file.reset();
            return false;
        }
        source = file.get();
    } else if (!source->isReadable()) {
        setErrorString(tr("the input is not open for reading"));
        return false;
    }
    QIODevice::open(mode | Unbuffered);

    // The magic bytes decide, not the name: pipelines often drop or add the ".gz".
    while (input.size() < 2 && fillInput()) {
    }
    if (failed)
        return true;
    compressed = hasGzipMagic(input);
    if (compressed) {
        inflater = std::make_unique<Inflater>();
        if (!inflater->ok)
            fail(tr("not enough memory to decompress"));
    }
    return true;
}

void InputDevice::close()
{
    QIODevice::close();
    inflater.reset();
    if (file)
        file->close();
    input.clear();
    inputStart = 0;
}

bool InputDevice::isSequential() const
{
    return true;
}

bool InputDevice::atEnd() const
{
    return !isOpen() || finished || failed;
}

qint64 InputDevice::bytesAvailable() const
{
    return QIODevice::bytesAvailable() + (compressed ? 0 : input.size() - inputStart);
}

qint64 InputDevice::getSourceSize() const
{
    return source && !source->isSequential() ? source->size() : -1;
}

bool InputDevice::fillInput()
{
    if (sourceEnded || failed)
        return false;
    if (inputStart > 0) {
        input.remove(0, inputStart);
        inputStart = 0;
    }
    const int had = input.size();
    input.resize(had + inputChunkSize);
    const qint64 got = source->read(input.data() + had, inputChunkSize);
    input.resize(had + int(std::max<qint64>(got, 0)));
    if (got < 0) {
        fail(source->errorString());
        return false;
    }
    if (got == 0) {
        sourceEnded = true;
        return false;
    }
    sourcePosition += got;
    return true;
}

qint64 InputDevice::fail(const QString& reason)
{
    failed = true;
    setErrorString(reason.isEmpty() ? tr("read error") : reason);
    return -1;
}

qint64 InputDevice::readData(char* data, qint64 maxSize)
{
    if (failed)
        return -1;
    if (finished || maxSize <= 0)
        return 0;
    const qint64 n = compressed ? readCompressed(data, maxSize) : readPlain(data, maxSize);
    if (n == 0)
        finished = true;
    return n;
}

qint64 InputDevice::readPlain(char* data, qint64 maxSize)
{
    // What the sniffing read first, then straight from the source.
    if (inputStart < input.size()) {
        const int n = int(std::min<qint64>(maxSize, input.size() - inputStart));
        std::copy_n(input.constData() + inputStart, n, data);
        inputStart += n;
        return n;
    }
    if (sourceEnded)
        return 0;
    const qint64 got = source->read(data, maxSize);
    if (got < 0)
        return fail(source->errorString());
    if (got == 0)
        sourceEnded = true;
    sourcePosition += got;
    return got;
}

qint64 InputDevice::readCompressed(char* data, qint64 maxSize)
{
    z_stream& z = inflater->stream;
    const uInt room = uInt(std::min<qint64>(maxSize, UINT_MAX));
    for (;;) {
        if (inputStart >= input.size() && !fillInput()) {
            if (failed)
                return -1;
            if (inflater->memberEnded)
                return 0;
            return fail(tr("the compressed data ends early (the file is cut short)"));
        }
        if (inflater->memberEnded) {
            // Another gzip member follows, as in files written in blocks or concatenated.
            inflateReset(&z);
            inflater->memberEnded = false;
        }
        z.next_in = reinterpret_cast<Bytef*>(input.data() + inputStart);
        z.avail_in = uInt(input.size() - inputStart);
        z.next_out = reinterpret_cast<Bytef*>(data);
        z.avail_out = room;
        const int result = inflate(&z, Z_NO_FLUSH);
        inputStart = input.size() - int(z.avail_in);
        const qint64 produced = room - z.avail_out;
        if (result == Z_STREAM_END)
            inflater->memberEnded = true;
        else if (result != Z_OK && result != Z_BUF_ERROR)
            return fail(tr("the compressed data is damaged (%1)").arg(QString::fromLatin1(z.msg ? z.msg : "zlib error")));
        if (produced > 0)
            return produced;
    }
}

qint64 InputDevice::writeData(const char*, qint64)
{
    return -1;
}

} // namespace nu
