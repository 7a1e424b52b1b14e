#include "nu/edit/propertydouble.h"
#include "nu/edit/propertypointf.h"
#include "nu/edit/propertyset.h"
#include "propertytrace.h"

#include <QJsonObject>
#include <QtTest>

using namespace nu::edit;

namespace {

class Value : public PropertyDouble
{
public:
    Value(const PropertyInfo& info, bool saveable)
        : PropertyDouble(info)
        , saveable(saveable)
    {
    }
    double getValue() const override { return value; }
    void setValue(double v) override { value = v; }
    bool isSaveable() const override { return saveable; }

    double value = 0;
    bool saveable;
};

class Point : public PropertyPointF
{
public:
    explicit Point(const PropertyInfo& info)
        : PropertyPointF(info)
    {
    }
    QPointF getValue() const override { return point; }
    void setValue(const QPointF& p) override { point = p; }

    QPointF point;
};

// A tree from a literal: "a" a value, "a~" a value that is not saved, "p@" a point compound
// ("p.x", "p.y"), "g(" opens a group and ")" closes it. Values start at 1, 2, 3... in order.
void build(PropertySet& set, const QString& literal)
{
    auto builder = set.beginProperties();
    double next = 1;
    for (const QString& token : literal.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        if (token == QLatin1String(")")) {
            builder.closeSet();
        } else if (token.endsWith(QLatin1Char('('))) {
            builder.openSet(PropertyInfo(token.chopped(1)));
        } else if (token.endsWith(QLatin1Char('@'))) {
            builder.prop<Point>(PropertyInfo(token.chopped(1)));
        } else {
            const bool saveable = !token.endsWith(QLatin1Char('~'));
            builder.prop<Value>(PropertyInfo(saveable ? token : token.chopped(1)), saveable);
        }
    }
    builder.endProperties();
    for (auto it = set.getBasicProperties(); !it.atEnd(); ++it)
        it->setVariant(next++);
}

QString traceBasic(const PropertySet& set)
{
    QStringList names;
    for (auto it = set.getBasicProperties(); !it.atEnd(); ++it)
        names << it->getName();
    return names.join(QLatin1Char(' '));
}

} // namespace

class TestPropertySet : public QObject
{
    Q_OBJECT
private slots:
    void iteratorOrder_data();
    void iteratorOrder();
    void lookup_data();
    void lookup();
    void jsonIsFlat();
    void missingJsonKeysReadAsZero();
    void undoDiff_data();
    void undoDiff();
};

void TestPropertySet::iteratorOrder_data()
{
    QTest::addColumn<QString>("literal");
    QTest::addColumn<QString>("all");
    QTest::addColumn<QString>("basic");

    QTest::newRow("empty group") << "a e( ) b" << "a <e > b" << "a b";
    QTest::newRow("compound in a group") << "g( p@ ) z" << "<g <p p.x p.y > > z" << "p.x p.y z";
    QTest::newRow("unsaved values too") << "a~ g( b~ )" << "a <g b >" << "a b";
}

void TestPropertySet::iteratorOrder()
{
    QFETCH(QString, literal);
    QFETCH(QString, all);
    QFETCH(QString, basic);

    PropertySet set;
    build(set, literal);
    QCOMPARE(Sorvik::Test::tracePropertyTree(set), all);
    QCOMPARE(traceBasic(set), basic);
}

void TestPropertySet::lookup_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isProperty");
    QTest::addColumn<bool>("isBasic");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("compound member") << "p.y" << true << true << QVariant(3.0);
    QTest::newRow("unsaved") << "u" << true << true << QVariant(5.0);
    QTest::newRow("unknown") << "x" << false << false << QVariant();
}

void TestPropertySet::lookup()
{
    QFETCH(QString, name);
    QFETCH(bool, isProperty);
    QFETCH(bool, isBasic);
    QFETCH(QVariant, value);

    PropertySet set;
    build(set, "a g( p@ b ) u~");
    QCOMPARE(bool(set.findProperty(name)), isProperty);
    QCOMPARE(bool(set.findBasicProperty(name)), isBasic);
    QCOMPARE(set.getPropertyValue(name), value);

    set.setPropertyValue(name, 42.0);
    QCOMPARE(set.getPropertyValue(name), isBasic ? QVariant(42.0) : QVariant());
}

void TestPropertySet::jsonIsFlat()
{
    PropertySet set;
    build(set, "a g( p@ h( b ) ) u~");
    const QJsonObject expected{{"a", 1.0}, {"p.x", 2.0}, {"p.y", 3.0}, {"b", 4.0}};
    QCOMPARE(set.getJsonValue().toObject(), expected);
    QCOMPARE(PropertySet::Data(set).getValues().keys(), (QStringList{"a", "b", "p.x", "p.y"}));

    PropertySet copy;
    build(copy, "a g( p@ h( b ) ) u~");
    QJsonObject changed = expected;
    changed.insert(QStringLiteral("p.x"), -8.5);
    changed.insert(QStringLiteral("u"), 9.0);
    copy.setJsonValue(changed);
    QCOMPARE(copy.getPropertyValue(QStringLiteral("p.x")), QVariant(-8.5));
    // An unsaved value is still read when the file has it.
    QCOMPARE(copy.getPropertyValue(QStringLiteral("u")), QVariant(9.0));
}

void TestPropertySet::missingJsonKeysReadAsZero()
{
    PropertySet set;
    build(set, "a g( p@ ) u~");
    set.setJsonValue(QJsonObject{{"p.y", 6.0}, {"stray", 1.0}});
    QCOMPARE(set.getJsonValue().toObject(), (QJsonObject{{"a", 0.0}, {"p.x", 0.0}, {"p.y", 6.0}}));
    QCOMPARE(set.getPropertyValue(QStringLiteral("u")), QVariant(0.0));

    // Not an object at all: everything reads as zero.
    set.setJsonValue(QJsonValue(QStringLiteral("nonsense")));
    QCOMPARE(set.getPropertyValue(QStringLiteral("p.y")), QVariant(0.0));
}

void TestPropertySet::undoDiff_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QStringList>("remaining");

    QTest::newRow("nothing changed") << "" << QStringList();
    QTest::newRow("two values") << "b=9 p.x=0.5" << QStringList{"b", "p.x"};
    QTest::newRow("changed and changed back") << "b=9 b=2" << QStringList();
    QTest::newRow("unsaved value") << "u=9" << QStringList();
}

void TestPropertySet::undoDiff()
{
    QFETCH(QString, change);
    QFETCH(QStringList, remaining);

    PropertySet set;
    build(set, "a b g( p@ ) u~");
    PropertySet::Data before(set);
    for (const QString& assignment : change.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QStringList parts = assignment.split(QLatin1Char('='));
        set.setPropertyValue(parts[0], parts[1].toDouble());
    }
    const PropertySet::Data original(before);
    QCOMPARE(before.undoDiff(set), !remaining.isEmpty());
    QCOMPARE(before.getValues().keys(), remaining);

    // Applying what is left undoes the change.
    set.set(before);
    PropertySet::Data after(set);
    QCOMPARE(after, original);
}

QTEST_MAIN(TestPropertySet)
#include "tst_propertyset.moc"
