#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

namespace nu {

// Tallies of keys (taxon ids) and their grand total. Tallies saturate instead of overflowing.
class Frequencies
{
public:
    void add(const QString& key);
    void add(const QString& key, qint64 n);

    qint64 get(const QString& key) const;
    QStringList keys() const;
    qint64 getTotal() const { return total; }
    int size() const { return tallies.size(); }
    const QHash<QString, qint64>& getTallies() const { return tallies; }

private:
    QHash<QString, qint64> tallies;
    qint64 total = 0;
};

} // namespace nu
