#pragma once

#include <QString>

#include <functional>

namespace nu {

class Frequencies;
class LineReader;

// Fills Frequencies from whitespace-separated words: with one column every word is one
// occurrence of itself; with two columns words go in pairs, a key and a count to add to it.
// A pair whose count is not a non-negative integer is skipped, and so is a word longer than any
// key can be and a line longer than the reader keeps, so no input exhausts memory.
class FrequenciesLoader
{
public:
    static constexpr int maxWordLength = 4096;

    FrequenciesLoader(LineReader& lines, Frequencies& frequencies);

    // Values above 1 mean two columns, anything else one.
    void setNumberColumns(int n);
    // Called with the number of words read so far, after each word; it may throw to stop.
    void setStepCallback(std::function<void(qint64)> callback);
    // Called with the reason for each word or pair passed over, while the reader is still on its
    // line.
    void setSkipCallback(std::function<void(const QString& reason)> callback);
    void load();

    // Words or pairs passed over because they could not be read as a key and a count.
    qint64 getSkipped() const { return skipped; }

private:
    void word(const QString& text, bool tooLong);
    void skip(const QString& reason);

    int numberColumns = 1;
    LineReader& lines;
    Frequencies& frequencies;
    std::function<void(qint64)> stepCallback;
    std::function<void(const QString&)> skipCallback;
    QString pendingKey;
    bool havePendingKey = false;
    bool pendingKeyTooLong = false;
    qint64 words = 0;
    qint64 skipped = 0;
};

} // namespace nu
