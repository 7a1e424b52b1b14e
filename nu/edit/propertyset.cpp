#include "nu/edit/propertyset.h"

#include <QJsonObject>

namespace nu {
namespace edit {

PropertySet::Builder::Builder(PropertySet& set)
    : sets{&set}
{
}

PropertySet::Builder& PropertySet::Builder::openSet(PropertyInfo&& info)
{
    auto group = std::make_shared<PropertySet>(info);
    sets.back()->properties.push_back(group);
    sets.push_back(group.get());
    return *this;
}

PropertySet::Builder& PropertySet::Builder::closeSet()
{
    // The set being declared itself is never closed.
    if (sets.size() > 1)
        sets.pop_back();
    return *this;
}

PropertySet::Iterator::Iterator(const PropertySet& set)
{
    cursors.push_back({set.properties.cbegin(), set.properties.cend()});
    settle();
}

bool PropertySet::Iterator::atEnd() const
{
    return cursors.front().position == cursors.front().end;
}

bool PropertySet::Iterator::atSetEnd() const
{
    return cursors.back().position == cursors.back().end;
}

PropertySet::Iterator& PropertySet::Iterator::operator++()
{
    setStart = false;
    if (atEnd())
        return *this;
    Cursor& top = cursors.back();
    if (top.position != top.end) {
        if (auto set = std::dynamic_pointer_cast<PropertySet>(*top.position))
            cursors.push_back({set->properties.cbegin(), set->properties.cend()});
        else
            ++top.position;
    } else {
        cursors.pop_back();
        ++cursors.back().position;
    }
    settle();
    return *this;
}

void PropertySet::Iterator::settle()
{
    const Cursor& top = cursors.back();
    if (top.position == top.end)
        return;
    current = *top.position;
    setStart = bool(std::dynamic_pointer_cast<PropertySet>(current));
}

PropertySet::IteratorBasic::IteratorBasic(const PropertySet& set)
    : iterator(set)
{
    skipToBasic();
}

PropertySet::IteratorBasic& PropertySet::IteratorBasic::operator++()
{
    if (!iterator.atEnd()) {
        ++iterator;
        skipToBasic();
    }
    return *this;
}

void PropertySet::IteratorBasic::skipToBasic()
{
    for (; !iterator.atEnd(); ++iterator) {
        if (iterator.atSetStart() || iterator.atSetEnd())
            continue;
        current = std::dynamic_pointer_cast<PropertyBasic>(iterator.get());
        if (current)
            return;
    }
    current.reset();
}

PropertySet::Data::Data(const PropertySet& set)
{
    for (IteratorBasic it = set.getBasicProperties(); !it.atEnd(); ++it) {
        // The first property of a name is the one lookup reaches.
        if (it->isSaveable() && !values.contains(it->getName()))
            values.insert(it->getName(), it->getVariant());
    }
}

bool PropertySet::Data::undoDiff(const PropertySet& set)
{
    for (IteratorBasic it = set.getBasicProperties(); !it.atEnd(); ++it) {
        const auto entry = values.find(it->getName());
        if (entry == values.end())
            continue;
        const QVariant now = it->getVariant();
        if (entry->userType() == now.userType() && *entry == now)
            values.erase(entry);
    }
    return !values.isEmpty();
}

void PropertySet::Data::keepOnly(const Data& other)
{
    for (auto entry = values.begin(); entry != values.end();) {
        if (other.contains(entry.key()))
            ++entry;
        else
            entry = values.erase(entry);
    }
}

PropertySet::PropertySet()
    : Property(PropertyInfo())
{
}

PropertySet::PropertySet(const PropertyInfo& info)
    : Property(info)
{
}

PropertySet::Builder PropertySet::beginProperties()
{
    return Builder(*this);
}

PropertySet::Iterator PropertySet::getProperties() const
{
    return Iterator(*this);
}

PropertySet::IteratorBasic PropertySet::getBasicProperties() const
{
    return IteratorBasic(*this);
}

std::shared_ptr<Property> PropertySet::findProperty(const QString& name) const
{
    for (Iterator it = getProperties(); !it.atEnd(); ++it) {
        if (!it.atSetEnd() && it->getName() == name)
            return it.get();
    }
    return nullptr;
}

std::shared_ptr<PropertyBasic> PropertySet::findBasicProperty(const QString& name) const
{
    for (IteratorBasic it = getBasicProperties(); !it.atEnd(); ++it) {
        if (it->getName() == name)
            return it.get();
    }
    return nullptr;
}

QVariant PropertySet::getPropertyValue(const QString& name) const
{
    const auto property = findBasicProperty(name);
    return property ? property->getVariant() : QVariant();
}

void PropertySet::setPropertyValue(const QString& name, const QVariant& value)
{
    if (const auto property = findBasicProperty(name))
        property->setVariant(value);
}

void PropertySet::set(const Data& data)
{
    const auto& values = data.getValues();
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry)
        setPropertyValue(entry.key(), entry.value());
}

QJsonValue PropertySet::getJsonValue() const
{
    QJsonObject object;
    for (IteratorBasic it = getBasicProperties(); !it.atEnd(); ++it) {
        if (it->isSaveable() && !object.contains(it->getName()))
            object.insert(it->getName(), it->getJsonValue());
    }
    return object;
}

void PropertySet::setJsonValue(const QJsonValue& value)
{
    const QJsonObject object = value.toObject();
    for (IteratorBasic it = getBasicProperties(); !it.atEnd(); ++it)
        it->setJsonValue(object.value(it->getName()));
}

} // namespace edit
} // namespace nu
