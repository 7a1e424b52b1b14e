#pragma once

#include <QByteArray>
#include <QVariantMap>

#include <utility>
#include <vector>

namespace nu {

// Compact JSON text of a value map, byte for byte what QJsonDocument writes in compact form.
// Maps of plain ASCII strings (nearly every ontology node) take a fast path that skips building
// a QJsonObject; anything else goes through Qt.
QByteArray toCompactJson(const QVariantMap& map);

// The same text, as a string, for count (key, value) pairs of texts sorted by key with no key
// twice: the form in which ontology builders keep their nodes' values.
QString toCompactJsonText(const std::pair<QString, QString>* entries, int count);

// The (key, value) pairs of a flat JSON object of strings without escapes (every ontology node's
// values), in their order, as views into json. False for any other text, which fromCompactJson
// reads; pairs then holds nothing of use.
bool splitCompactJson(const QString& json, std::vector<std::pair<QStringView, QStringView>>& pairs);

// The value map of a JSON object text; text that is not a JSON object gives an empty map. Flat
// objects of plain strings take a fast path; anything else goes through Qt.
QVariantMap fromCompactJson(const QByteArray& json);
// The same from text, as it comes out of a database, without converting it to UTF-8 first.
QVariantMap fromCompactJson(const QString& json);

} // namespace nu
