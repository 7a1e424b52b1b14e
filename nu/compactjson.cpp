#include "nu/compactjson.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace nu {

namespace {

char hexDigit(unsigned v)
{
    return static_cast<char>(v < 10 ? '0' + v : 'a' + v - 10);
}

// Writes the JSON string form of s at out (room for 6 characters per input character plus the
// quotes must be there); returns the end, or null when s holds a non-ASCII character.
template <typename Char>
Char* writeAsciiString(Char* out, const QString& s)
{
    *out++ = '"';
    for (const QChar qc : s) {
        const ushort u = qc.unicode();
        if (u >= 0x80)
            return nullptr;
        if (u >= 0x20 && u != '"' && u != '\\') {
            *out++ = static_cast<Char>(u);
            continue;
        }
        *out++ = '\\';
        switch (u) {
        case '"': *out++ = '"'; break;
        case '\\': *out++ = '\\'; break;
        case 0x08: *out++ = 'b'; break;
        case 0x0c: *out++ = 'f'; break;
        case 0x0a: *out++ = 'n'; break;
        case 0x0d: *out++ = 'r'; break;
        case 0x09: *out++ = 't'; break;
        default:
            *out++ = 'u';
            *out++ = '0';
            *out++ = '0';
            *out++ = static_cast<Char>(hexDigit(u >> 4));
            *out++ = static_cast<Char>(hexDigit(u & 0xf));
        }
    }
    *out++ = '"';
    return out;
}

// The fast path: writes into a buffer of Char (char or QChar's ushort) sized for the worst case,
// then trims it. False when the map needs Qt's general writer.
template <typename Text, typename Char>
bool writeFlatAscii(const QVariantMap& map, Text& text)
{
    int room = 2;
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        if (it.value().userType() != QMetaType::QString)
            return false;
        room += 6 * (it.key().size() + static_cast<const QString*>(it.value().constData())->size()) + 6;
    }
    text.resize(room);
    Char* const begin = reinterpret_cast<Char*>(text.data());
    Char* out = begin;
    *out++ = '{';
    bool first = true;
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        if (!first)
            *out++ = ',';
        first = false;
        out = writeAsciiString(out, it.key());
        if (!out)
            return false;
        *out++ = ':';
        out = writeAsciiString(out, *static_cast<const QString*>(it.value().constData()));
        if (!out)
            return false;
    }
    *out++ = '}';
    text.resize(static_cast<int>(out - begin));
    return true;
}

QByteArray viaQt(const QVariantMap& map)
{
    return QJsonDocument(QJsonObject::fromVariantMap(map)).toJson(QJsonDocument::Compact);
}

int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// Reads a JSON string starting at the opening quote; only ASCII text with simple escapes.
bool readAsciiString(const char*& p, const char* end, QString& out)
{
    if (p == end || *p != '"')
        return false;
    ++p;
    const char* start = p;
    while (p != end && *p != '"' && *p != '\\' && static_cast<unsigned char>(*p) >= 0x20
           && static_cast<unsigned char>(*p) < 0x80)
        ++p;
    if (p != end && *p == '"') {
        out = QString::fromLatin1(start, static_cast<int>(p - start));
        ++p;
        return true;
    }
    QByteArray text(start, static_cast<int>(p - start));
    while (p != end && *p != '"') {
        const unsigned char c = static_cast<unsigned char>(*p);
        if (c < 0x20 || c >= 0x80)
            return false;
        if (c != '\\') {
            text += static_cast<char>(c);
            ++p;
            continue;
        }
        if (++p == end)
            return false;
        switch (*p) {
        case '"': text += '"'; break;
        case '\\': text += '\\'; break;
        case '/': text += '/'; break;
        case 'b': text += '\b'; break;
        case 'f': text += '\f'; break;
        case 'n': text += '\n'; break;
        case 'r': text += '\r'; break;
        case 't': text += '\t'; break;
        case 'u': {
            if (end - p < 5)
                return false;
            int code = 0;
            for (int i = 1; i <= 4; ++i) {
                const int h = hexValue(p[i]);
                if (h < 0)
                    return false;
                code = code * 16 + h;
            }
            if (code >= 0x80)
                return false;
            text += static_cast<char>(code);
            p += 4;
            break;
        }
        default:
            return false;
        }
        ++p;
    }
    if (p == end)
        return false;
    ++p;
    out = QString::fromLatin1(text);
    return true;
}

} // namespace

QByteArray toCompactJson(const QVariantMap& map)
{
    QByteArray text;
    if (writeFlatAscii<QByteArray, char>(map, text))
        return text;
    return viaQt(map);
}

QString toCompactJsonText(const std::pair<QString, QString>* entries, int count)
{
    // Plain ASCII (nearly every node) is written straight into the string.
    int length = 2;
    for (int i = 0; i < count; ++i)
        length += entries[i].first.size() + entries[i].second.size() + 6;
    QString out(length, Qt::Uninitialized);
    QChar* data = out.data();
    int pos = 0;
    auto put = [&](char c) { data[pos++] = QLatin1Char(c); };
    auto append = [&](const QString& text) {
        put('"');
        for (const QChar c : text) {
            const ushort u = c.unicode();
            if (u >= 0x80)
                return false;
            if (u < 0x20 || u == '"' || u == '\\') {
                // Escapes are rare: make room for the longest, \u00XX.
                out.resize(out.size() + 6);
                data = out.data();
                put('\\');
                switch (u) {
                case '"': put('"'); break;
                case '\\': put('\\'); break;
                case 0x08: put('b'); break;
                case 0x0c: put('f'); break;
                case 0x0a: put('n'); break;
                case 0x0d: put('r'); break;
                case 0x09: put('t'); break;
                default:
                    put('u');
                    put('0');
                    put('0');
                    put(hexDigit(u >> 4));
                    put(hexDigit(u & 0xf));
                }
            } else {
                data[pos++] = c;
            }
        }
        put('"');
        return true;
    };
    put('{');
    bool ascii = true;
    for (int i = 0; i < count && ascii; ++i) {
        if (i > 0)
            put(',');
        ascii = append(entries[i].first) && (put(':'), append(entries[i].second));
    }
    if (!ascii) {
        QVariantMap map;
        for (int i = 0; i < count; ++i)
            map.insert(entries[i].first, entries[i].second);
        return QString::fromUtf8(toCompactJson(map));
    }
    put('}');
    out.truncate(pos);
    return out;
}

QVariantMap fromCompactJson(const QByteArray& json)
{
    const char* p = json.constData();
    const char* const end = p + json.size();
    QVariantMap map;
    if (p != end && *p == '{') {
        ++p;
        bool ok = true;
        if (p != end && *p == '}') {
            ++p;
        } else {
            for (;;) {
                QString key, value;
                if (!readAsciiString(p, end, key) || p == end || *p++ != ':'
                    || !readAsciiString(p, end, value) || p == end) {
                    ok = false;
                    break;
                }
                map.insert(key, value);
                const char c = *p++;
                if (c == '}')
                    break;
                if (c != ',') {
                    ok = false;
                    break;
                }
            }
        }
        if (ok && p == end)
            return map;
    }
    return QJsonDocument::fromJson(json).object().toVariantMap();
}

bool splitCompactJson(const QString& json, std::vector<std::pair<QStringView, QStringView>>& pairs)
{
    pairs.clear();
    const QChar* p = json.constData();
    const QChar* const end = p + json.size();
    auto readString = [&](QStringView& out) {
        if (p == end || *p != QLatin1Char('"'))
            return false;
        const QChar* start = ++p;
        while (p != end && *p != QLatin1Char('"')) {
            if (*p == QLatin1Char('\\') || p->unicode() < 0x20)
                return false;
            ++p;
        }
        if (p == end)
            return false;
        out = QStringView(start, p - start);
        ++p;
        return true;
    };
    if (p == end || *p++ != QLatin1Char('{'))
        return false;
    if (p != end && *p == QLatin1Char('}'))
        return p + 1 == end;
    for (;;) {
        QStringView key, value;
        if (!readString(key) || p == end || *p++ != QLatin1Char(':') || !readString(value) || p == end)
            return false;
        pairs.emplace_back(key, value);
        const QChar c = *p++;
        if (c == QLatin1Char('}'))
            return p == end;
        if (c != QLatin1Char(','))
            return false;
    }
}

QVariantMap fromCompactJson(const QString& json)
{
    // Flat objects of strings without escapes (every ontology node's values) are cut out of the
    // text directly; anything else takes the general way.
    const QChar* p = json.constData();
    const QChar* const end = p + json.size();
    auto readString = [&](QString& out) {
        if (p == end || *p != QLatin1Char('"'))
            return false;
        const QChar* start = ++p;
        while (p != end && *p != QLatin1Char('"')) {
            if (*p == QLatin1Char('\\') || p->unicode() < 0x20)
                return false;
            ++p;
        }
        if (p == end)
            return false;
        out = QString(start, int(p - start));
        ++p;
        return true;
    };
    QVariantMap map;
    if (p != end && *p == QLatin1Char('{')) {
        ++p;
        if (p != end && *p == QLatin1Char('}') && p + 1 == end)
            return map;
        for (;;) {
            QString key, value;
            if (!readString(key) || p == end || *p++ != QLatin1Char(':') || !readString(value) || p == end)
                break;
            map.insert(key, value);
            const QChar c = *p++;
            if (c == QLatin1Char('}')) {
                if (p == end)
                    return map;
                break;
            }
            if (c != QLatin1Char(','))
                break;
        }
    }
    return fromCompactJson(json.toUtf8());
}

} // namespace nu
