#include "nu/frequenciesloader.h"

#include "nu/frequencies.h"
#include "nu/linereader.h"

namespace nu {

namespace {

bool isBlank(ushort c)
{
    // The ASCII blanks, and the rarer Unicode ones through Qt.
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v'
        || (c >= 0x80 && QChar(c).isSpace());
}

QString tooLongReason()
{
    return QStringLiteral("a word or line is too long");
}

QString quoted(const QString& text)
{
    return QLatin1Char('\'') + (text.size() > 40 ? text.left(40) + QStringLiteral("...") : text) + QLatin1Char('\'');
}

} // namespace

FrequenciesLoader::FrequenciesLoader(LineReader& lineReader, Frequencies& target)
    : lines(lineReader)
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

void FrequenciesLoader::setSkipCallback(std::function<void(const QString&)> callback)
{
    skipCallback = std::move(callback);
}

void FrequenciesLoader::skip(const QString& reason)
{
    ++skipped;
    if (skipCallback)
        skipCallback(reason);
}

void FrequenciesLoader::load()
{
    // Words never span lines, and a pair may: "any whitespace separates".
    while (lines.next()) {
        if (lines.isTooLong()) {
            word(QString(), true);
            continue;
        }
        const QString& text = lines.getLine();
        const QChar* data = text.constData();
        const int size = text.size();
        int i = 0;
        while (i < size) {
            if (isBlank(data[i].unicode())) {
                ++i;
                continue;
            }
            int j = i;
            while (j < size && !isBlank(data[j].unicode()))
                ++j;
            if (j - i > maxWordLength)
                word(QString(), true);
            else
                word(QString(data + i, j - i), false);
            i = j;
        }
    }
    if (havePendingKey)
        skip(QStringLiteral("the id %1 has no count").arg(quoted(pendingKey)));
}

void FrequenciesLoader::word(const QString& text, bool tooLong)
{
    ++words;
    if (numberColumns == 1) {
        if (tooLong)
            skip(tooLongReason());
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
        if (pendingKeyTooLong || tooLong)
            skip(tooLongReason());
        else if (!ok || n < 0)
            skip(QStringLiteral("%1 is not a count").arg(quoted(text)));
        else
            frequencies.add(pendingKey, n);
    }
    if (stepCallback)
        stepCallback(words);
}

} // namespace nu
