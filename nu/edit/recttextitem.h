#pragma once

#include "nu/edit/propertyfont.h"
#include "nu/edit/itemhandlers.h"
#include "nu/edit/propertygraphicsitem.h"
#include "nu/edit/propertystring.h"
#include "nu/graphics/recttextitem.h"

namespace nu {
namespace edit {

// A straight text (type 6).
class RectTextItem : public PropertyGraphicsItem<graphics::RectTextItem, 6>
{
public:
    // Its knobs.
    using ItemHandler = RectTextItemHandler;

    RectTextItem(graphics::RectTextItem& item, Id id, Id parentId);

    class Text : public PropertyString
    {
    public:
        Text(const PropertyInfo& info, graphics::RectTextItem& item);
        QString getValue() const override;
        void setValue(const QString& value) override;

    private:
        graphics::RectTextItem& item;
    };

    class Font : public PropertyFont
    {
    public:
        Font(const PropertyInfo& info, graphics::RectTextItem& item);
        QFont getValue() const override;
        void setValue(const QFont& value) override;

    private:
        graphics::RectTextItem& item;
    };
};

} // namespace edit
} // namespace nu
