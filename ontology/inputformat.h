#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

namespace Zem {
namespace Ontology {

class InputSample;
class Source;

// One input format that charts are made from: how the command line and the New chart wizard
// name it, whether its ids are placed in the NCBI taxonomy, how to recognise it and how to read
// it. The table of all of them is the one place that knows the formats: the wizard, the viewer's
// build and `sorvik-cli build` all take theirs from it, so a new format is one entry here plus
// its source class.
class InputFormat
{
public:
    // What the user chose beside the file.
    struct Options
    {
        // The value column of a table with several (0 for the first value column).
        int column = 0;
        // Whether unclassified reads get a slice of their own.
        bool keepUnclassified = true;
    };

    // Whether the first lines of a file look like this format: an empty text when they do, else
    // where and why not ("line 3: 'abc' is not a taxon id").
    using Check = std::function<QString(const InputSample& sample)>;
    // The names of a table's value columns, empty when the file has none.
    using ColumnReader = std::function<QStringList(const QString& fileName)>;
    using Factory = std::function<std::unique_ptr<Source>(const QString& fileName, const Options& options)>;

    // Percent and relative abundance tables are counted in parts per this many, so that small
    // shares keep whole counts.
    static constexpr double abundanceMultiplier = 10000.0;

    // The command line's FORMAT word, e.g. "krona".
    QString word;
    // The format's name in short ("QIIME") and what it is, as messages say it ("a QIIME summary
    // table").
    QString name;
    QString description;
    // The choice in the New chart wizard; empty when the format is reached through another's
    // page (a taxon-id list with counts is a variant of the taxon-id list there).
    QString label;
    // Count sources: their ids only mean something once placed in the NCBI taxonomy.
    bool needsTaxonomy = false;
    // Detection tries the formats in this order, lowest first: a format whose lines are a special
    // case of another's (an id and a count also read as a Krona line) comes before it.
    int detectionOrder = 0;
    // Empty when the format cannot be told from its content.
    Check check;
    // Empty for formats that are not tables of samples.
    ColumnReader readColumns;
    Factory makeSource;

    // Every format, in the order the wizard and the help list them.
    static const std::vector<InputFormat>& all();
    // The format with this command-line word, or null.
    static const InputFormat* find(const QString& word);
    // The format whose check the sample passes first, in detection order; null when none does,
    // and then whyNot says what was considered and why each was not taken, one reason each
    // ("not a Krona text file (line 3: 'x' is not a count)"), or why the file cannot be looked at.
    static const InputFormat* detect(const InputSample& sample, QStringList* whyNot = nullptr);
    static QStringList getWords();
    // The words of the formats that match, as a sentence lists them: "taxids, taxid-counts and
    // mgtaxa".
    static QString listWords(const std::function<bool(const InputFormat&)>& match);
};

} // namespace Ontology
} // namespace Zem
