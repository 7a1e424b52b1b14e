#pragma once

#include "nu/edit/property.h"
#include "nu/edit/propertybasic.h"

#include <QMap>
#include <QVariant>

#include <memory>
#include <vector>

namespace nu {
namespace edit {

// An ordered tree of properties: an editable item's whole state, a compound value (a pen, a
// point) or a plain group. Children are kept in the order they were added; a group adds no prefix
// to its children's names, only compounds prefix their members ("position.x"). Names of basic
// properties are unique within one item: lookup and JSON are keyed by them.
class PropertySet : public Property
{
public:
    using Properties = std::vector<std::shared_ptr<Property>>;

    // Declares properties: every call returns the builder, so that a declaration chains.
    class Builder
    {
    public:
        explicit Builder(PropertySet& set);

        // Appends a new T(info, args...) to the set being declared.
        template <class T, class... Args>
        Builder& prop(const PropertyInfo& info, Args&&... args)
        {
            sets.back()->properties.push_back(std::make_shared<T>(info, std::forward<Args>(args)...));
            return *this;
        }
        // Appends a plain group and declares into it until closeSet().
        Builder& openSet(PropertyInfo&& info);
        Builder& closeSet();
        void endProperties() {}

    private:
        std::vector<PropertySet*> sets;
    };

    // Depth first over the tree, with its boundaries: a set is met once at its start (the set
    // itself is current), then its children, then once more at its end (the current property
    // stays the last one met).
    class Iterator
    {
    public:
        explicit Iterator(const PropertySet& set);

        bool atEnd() const;
        bool atSetStart() const { return setStart; }
        bool atSetEnd() const;
        Iterator& operator++();
        Property& operator*() const { return *current; }
        Property* operator->() const { return current.get(); }
        const std::shared_ptr<Property>& get() const { return current; }
        // How many sets enclose the current position (0 at the top level).
        int getDepth() const { return int(cursors.size()) - 1; }

    private:
        struct Cursor
        {
            Properties::const_iterator position;
            Properties::const_iterator end;
        };
        void settle();

        std::vector<Cursor> cursors;
        std::shared_ptr<Property> current;
        bool setStart = false;
    };

    // The basic properties alone, depth first, each once.
    class IteratorBasic
    {
    public:
        explicit IteratorBasic(const PropertySet& set);

        bool atEnd() const { return iterator.atEnd(); }
        IteratorBasic& operator++();
        PropertyBasic& operator*() const { return *current; }
        PropertyBasic* operator->() const { return current.get(); }
        const std::shared_ptr<PropertyBasic>& get() const { return current; }

    private:
        void skipToBasic();

        Iterator iterator;
        std::shared_ptr<PropertyBasic> current;
    };

    // A snapshot of a set: name to variant of every saveable basic property, ordered by name.
    class Data
    {
    public:
        Data() = default;
        explicit Data(const PropertySet& set);

        // Drops the entries whose property now holds the same value (same variant type and
        // equal); true when some entry is left. A snapshot taken before an edit and reduced after
        // it holds exactly the old values of what the edit changed.
        bool undoDiff(const PropertySet& set);
        // Drops every entry whose name is not in other.
        void keepOnly(const Data& other);

        bool isEmpty() const { return values.isEmpty(); }
        int size() const { return values.size(); }
        bool contains(const QString& name) const { return values.contains(name); }
        QVariant value(const QString& name) const { return values.value(name); }
        void insert(const QString& name, const QVariant& value) { values.insert(name, value); }
        const QMap<QString, QVariant>& getValues() const { return values; }

        bool operator==(const Data& other) const { return values == other.values; }
        bool operator!=(const Data& other) const { return !(*this == other); }

    private:
        QMap<QString, QVariant> values;
    };

    PropertySet();
    explicit PropertySet(const PropertyInfo& info);

    Builder beginProperties();
    Iterator getProperties() const;
    IteratorBasic getBasicProperties() const;
    const Properties& getChildren() const { return properties; }

    // The first property (groups and compounds included) with this name, depth first.
    std::shared_ptr<Property> findProperty(const QString& name) const;
    std::shared_ptr<PropertyBasic> findBasicProperty(const QString& name) const;
    // Invalid when no basic property has this name.
    QVariant getPropertyValue(const QString& name) const;
    // Nothing when no basic property has this name.
    void setPropertyValue(const QString& name, const QVariant& value);
    // Writes every entry of the snapshot, in name order; unknown names are ignored.
    void set(const Data& data);

    // A flat object: one member per saveable basic property, keyed by its full name.
    QJsonValue getJsonValue() const override;
    // Every basic property reads its member of the object; a missing member gives its zero.
    void setJsonValue(const QJsonValue& value) override;

private:
    Properties properties;
};

} // namespace edit
} // namespace nu
