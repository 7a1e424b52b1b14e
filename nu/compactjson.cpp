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

QString toCompactJsonString(const QVariantMap& map)
{
    QString text;
    if (writeFlatAscii<QString, ushort>(map, text))
        return text;
    return QString::fromUtf8(viaQt(map));
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

} // namespace nu
