#pragma once

#include <QBrush>
#include <QFont>
#include <QPen>
#include <QString>

namespace nu {
namespace graphics {

// A text with the font, outline pen and fill brush it is drawn with (a slice's label).
class DrawableText
{
public:
    DrawableText();
    explicit DrawableText(const QString& text);

    bool operator==(const DrawableText& other) const;
    bool operator!=(const DrawableText& other) const { return !(*this == other); }

    QFont font;
    QString text;
    QPen pen{Qt::NoPen};
    QBrush brush{Qt::black, Qt::SolidPattern};
};

} // namespace graphics
} // namespace nu
