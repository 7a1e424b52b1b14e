#include "nu/frequenciesloader.h"

#include "nu/frequencies.h"

#include <QTextStream>

namespace nu {

namespace {

constexpr int chunkSize = 64 * 1024;

bool isBlank(ushort c)
{
    // The ASCII blanks, and the rarer Unicode ones through Qt.
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v'
        || (c >= 0x80 && QChar(c).isSpace());
}

} // namespace

FrequenciesLoader::FrequenciesLoader(QTextStream& textStream, Frequencies& target)
    : stream(textStream)
    , frequencies(target)
{
}

void FrequenciesLoader::setNumberColumns(int n)
{
    numberColumns = n > 1 ? 2 : 1;
}

void FrequenciesLoader::setStepCallback(std::function<void(qint64)> callback)
{
    stepCallback = std::move(callback);
}

void FrequenciesLoader::load()
{
    // The words are cut out of large chunks by hand: the stream's own word reading holds a whole
    // word in memory however long it is.
    QString current;
    bool tooLong = false;
    // The end is an empty read: a pipe may have nothing to give yet and still not be at its end.
    for (;;) {
        const QString chunk = stream.read(chunkSize);
        if (chunk.isEmpty())
            break;
        const QChar* data = chunk.constData();
        const int size = chunk.size();
        int i = 0;
        while (i < size) {
            if (isBlank(data[i].unicode())) {
                if (!current.isEmpty() || tooLong) {
                    word(current, tooLong);
                    current.clear();
                    tooLong = false;
                }
                ++i;
                continue;
            }
            int j = i;
            while (j < size && !isBlank(data[j].unicode()))
                ++j;
            if (!tooLong) {
                if (current.size() + (j - i) > maxWordLength) {
                    tooLong = true;
                    current.clear();
                } else {
                    current.append(data + i, j - i);
                }
            }
            i = j;
        }
    }
    if (!current.isEmpty() || tooLong)
        word(current, tooLong);
    if (havePendingKey)
        ++skipped;
}

void FrequenciesLoader::word(const QString& text, bool tooLong)
{
    ++words;
    if (numberColumns == 1) {
        if (tooLong)
            ++skipped;
        else
            frequencies.add(text);
    } else if (!havePendingKey) {
        pendingKey = text;
        pendingKeyTooLong = tooLong;
        havePendingKey = true;
    } else {
        havePendingKey = false;
        bool ok = false;
        const qint64 n = tooLong ? 0 : text.toLongLong(&ok, 10);
        if (!ok || n < 0 || pendingKeyTooLong)
            ++skipped;
        else
            frequencies.add(pendingKey, n);
    }
    if (stepCallback)
        stepCallback(words);
}

} // namespace nu
