#include "nu/graphics/drawabletext.h"

namespace nu {
namespace graphics {

DrawableText::DrawableText() = default;

DrawableText::DrawableText(const QString& t)
    : text(t)
{
}

bool DrawableText::operator==(const DrawableText& other) const
{
    return text == other.text && pen == other.pen && brush == other.brush && font == other.font;
}

} // namespace graphics
} // namespace nu
