#include "tests/support/inputtotals.h"

#include <QFile>
#include <QList>
#include <QRegularExpression>

#include <cmath>

namespace Sorvik {
namespace Test {

namespace {

QList<QByteArray> linesOf(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<QByteArray> lines = file.readAll().split('\n');
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    for (QByteArray& line : lines) {
        if (line.endsWith('\r'))
            line.chop(1);
    }
    return lines;
}

} // namespace

KronaTotals kronaTotals(const QString& fileName)
{
    static const QRegularExpression count(QStringLiteral("^[0-9]+$"));
    KronaTotals totals;
    for (const QByteArray& line : linesOf(fileName)) {
        if (line.trimmed().isEmpty() || line.startsWith('#'))
            continue;
        const QString first = QString::fromUtf8(line.left(line.indexOf('\t') < 0 ? line.size() : line.indexOf('\t')));
        if (count.match(first).hasMatch())
            totals.total += first.toLongLong();
        else
            ++totals.malformed;
    }
    return totals;
}

QiimeTotals qiimeTotals(const QString& fileName, int column)
{
    QiimeTotals totals;
    bool header = false;
    for (const QByteArray& line : linesOf(fileName)) {
        // Comment lines above the header have no TAB; the header is the first line after them.
        if (!header) {
            header = !(line.startsWith('#') && !line.contains('\t'));
            continue;
        }
        const QList<QByteArray> fields = line.split('\t');
        if (fields.size() <= column + 1)
            continue;
        bool ok = false;
        const double value = fields.at(column + 1).toDouble(&ok);
        if (ok && std::isfinite(value) && value >= 0.0) {
            totals.sum += value;
            ++totals.rows;
        }
    }
    return totals;
}

} // namespace Test
} // namespace Sorvik
