#include "nu/edit/graphicsitemproperties.h"
#include "nu/edit/propertyanchor.h"
#include "nu/edit/propertybool.h"
#include "nu/edit/propertycolor.h"
#include "nu/edit/propertydouble.h"
#include "nu/edit/propertydrawabletext.h"
#include "nu/edit/propertyfont.h"
#include "nu/edit/propertygraphicsitem.h"
#include "nu/edit/propertyinteger.h"
#include "nu/edit/propertyoption.h"
#include "nu/edit/propertystring.h"
#include "nu/graphics/lineitem.h"
#include "nu/graphics/piecharttextitem.h"
#include "nu/graphics/recttextitem.h"
#include "resources/resources.h"

#include <QDoubleSpinBox>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLinearGradient>
#include <QSpinBox>
#include <QtTest>

#include <memory>
#include <type_traits>

using namespace nu::edit;
namespace graphics = nu::graphics;

namespace {

// A value property over a value of its own.
template <class Base, class T>
class Stored : public Base
{
public:
    using Argument = std::conditional_t<std::is_arithmetic<T>::value, T, const T&>;

    explicit Stored(const QString& name, T initial = T())
        : Base(PropertyInfo(name))
        , value(initial)
    {
    }
    T getValue() const override { return value; }
    void setValue(Argument v) override { value = v; }

    T value;
};

using StoredBool = Stored<PropertyBool, bool>;
using StoredInteger = Stored<PropertyInteger, int>;
using StoredDouble = Stored<PropertyDouble, double>;
using StoredString = Stored<PropertyString, QString>;
using StoredOption = Stored<PropertyOption, int>;
using StoredColor = Stored<PropertyColor, QColor>;
using StoredFont = Stored<PropertyFont, QFont>;

class StoredDrawableText : public PropertyDrawableText
{
public:
    StoredDrawableText(const PropertyInfo& info, const graphics::DrawableText& text)
        : PropertyDrawableText(info)
        , text(text)
    {
    }
    graphics::DrawableText getValue() const override { return text; }
    void setValue(const graphics::DrawableText& value) override { text = value; }

    graphics::DrawableText text;
};

std::unique_ptr<PropertyBasic> makeStored(const QString& kind)
{
    if (kind == QLatin1String("bool"))
        return std::make_unique<StoredBool>(kind, true);
    if (kind == QLatin1String("int"))
        return std::make_unique<StoredInteger>(kind, 9);
    if (kind == QLatin1String("double"))
        return std::make_unique<StoredDouble>(kind, 9.5);
    if (kind == QLatin1String("string"))
        return std::make_unique<StoredString>(kind, QStringLiteral("before"));
    if (kind == QLatin1String("option")) {
        auto option = std::make_unique<StoredOption>(kind, 1);
        option->addOption(0, QStringLiteral("zero"));
        option->addOption(1, QStringLiteral("one"));
        option->addOption(2, QStringLiteral("two"));
        return option;
    }
    if (kind == QLatin1String("color"))
        return std::make_unique<StoredColor>(kind, QColor(Qt::yellow));
    if (kind == QLatin1String("font"))
        return std::make_unique<StoredFont>(kind, QFont(QStringLiteral("Serif"), 31));
    return nullptr;
}

QJsonObject parse(const char* json)
{
    return QJsonDocument::fromJson(json).object();
}

QString someFontString()
{
    QFont font(QStringLiteral("Serif"), 17);
    font.setBold(true);
    return font.toString();
}

// A wrapper for a labelled slice, enough to exercise the item operations.
class Slice : public PropertyGraphicsItem<graphics::PieChartTextItem, 2>
{
public:
    Slice(graphics::PieChartTextItem& item, Id id, Id parentId)
        : PropertyGraphicsItem(item, id, parentId)
    {
        beginProperties()
            .prop<PropertyCountItemCount>(PropertyInfo(QStringLiteral("count")), item)
            .prop<PropertyOrderedItemOrder>(PropertyInfo(QStringLiteral("order")), item, false)
            .prop<PropertyCustomTraceItemPen>(PropertyInfo(QStringLiteral("border")), item)
            .endProperties();
    }
};

} // namespace

class TestProperties : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { Sorvik::initResources(); }
    void jsonReadsWrongKindsAsZero_data();
    void jsonReadsWrongKindsAsZero();
    void compoundKeysAndEncodings_data();
    void compoundKeysAndEncodings();
    void compoundMemberWritesKeepTheRest();
    void styleIds_data();
    void styleIds();
    void optionLists_data();
    void optionLists();
    void untouchedEditorWritesNothing_data();
    void untouchedEditorWritesNothing();
    void itemJson();
    void setParentRefusesCycles_data();
    void setParentRefusesCycles();
    void setParentToTheSameParentKeepsCounts();
};

void TestProperties::jsonReadsWrongKindsAsZero_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QJsonValue>("input");
    QTest::addColumn<QVariant>("expected");

    const QJsonValue missing(QJsonValue::Undefined);
    QTest::newRow("bool") << "bool" << QJsonValue(true) << QVariant(true);
    QTest::newRow("bool from string") << "bool" << QJsonValue("true") << QVariant(false);
    QTest::newRow("int from fraction") << "int" << QJsonValue(2.5) << QVariant(0);
    QTest::newRow("int beyond 32 bits") << "int" << QJsonValue(3e9) << QVariant(0);
    QTest::newRow("double from array") << "double" << QJsonValue(QJsonArray{1.5}) << QVariant(0.0);
    QTest::newRow("string") << "string" << QJsonValue("Bacteria") << QVariant("Bacteria");
    QTest::newRow("option from name") << "option" << QJsonValue("two") << QVariant(0);
    QTest::newRow("colour") << "color" << QJsonValue("#80ff0001") << QVariant("#80ff0001");
    QTest::newRow("font") << "font" << QJsonValue(someFontString()) << QVariant(someFontString());
    QTest::newRow("font missing") << "font" << missing << QVariant(QFont().toString());
    QTest::newRow("font unreadable") << "font" << QJsonValue(",,,") << QVariant(QFont().toString());
}

void TestProperties::jsonReadsWrongKindsAsZero()
{
    QFETCH(QString, kind);
    QFETCH(QJsonValue, input);
    QFETCH(QVariant, expected);

    const auto property = makeStored(kind);
    if (QByteArray(QTest::currentDataTag()) == "font unreadable")
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("QFont::fromString.*")));
    property->setJsonValue(input);
    QCOMPARE(property->getVariant(), expected);
    // What is read is what is written back.
    QCOMPARE(property->getJsonValue().toVariant(), expected);
}

void TestProperties::compoundKeysAndEncodings_data()
{
    QTest::addColumn<QString>("compound");
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QJsonObject>("json");

    QTest::newRow("pen") << "pen" << QStringList{"line.color", "line.width", "line.style"}
                         << parse(R"({"line.color": "#04010203", "line.width": 3, "line.style": 2})");
    QTest::newRow("brush") << "brush" << QStringList{"fill.color", "fill.style"}
                           << parse(R"({"fill.color": "#ff102030", "fill.style": 9})");
    QTest::newRow("point") << "point" << QStringList{"position.x", "position.y"}
                           << parse(R"({"position.x": 1.5, "position.y": -2})");
    QTest::newRow("anchor") << "anchor" << QStringList{"anchor.horizontal", "anchor.vertical"}
                            << parse(R"({"anchor.horizontal": 2, "anchor.vertical": 0})");
    QJsonObject text = parse(R"({"text.text": "Archaea", "text.pen.color": "#ff00ff00", "text.pen.width": 2,
                                 "text.pen.style": 1, "text.brush.color": "#7f0000ff", "text.brush.style": 1})");
    text.insert(QStringLiteral("text.font"), someFontString());
    QTest::newRow("drawable text") << "text"
                                   << QStringList{"text.text", "text.font", "text.pen.color", "text.pen.width",
                                                  "text.pen.style", "text.brush.color", "text.brush.style"}
                                   << text;
}

void TestProperties::compoundKeysAndEncodings()
{
    QFETCH(QString, compound);
    QFETCH(QStringList, names);
    QFETCH(QJsonObject, json);

    graphics::LineItem line;
    line.setPen(QPen(QColor(1, 2, 3, 4), 3, Qt::DashLine));
    line.setPos(1.5, -2);
    graphics::RectTextItem rect;
    rect.setBrush(QBrush(QColor(0x10, 0x20, 0x30), Qt::HorPattern));
    rect.setHorizontalAnchor(graphics::AnchorItem::HorizontalAnchor::Right);
    rect.setVerticalAnchor(graphics::AnchorItem::VerticalAnchor::Top);
    graphics::DrawableText drawable(QStringLiteral("Archaea"));
    drawable.font.fromString(someFontString());
    drawable.pen = QPen(Qt::green, 2);
    drawable.brush = QBrush(QColor(0, 0, 255, 127));

    // Builds the compound over the given items, so a blank pair can read the JSON back.
    const auto make = [&compound](graphics::LineItem& line, graphics::RectTextItem& rect,
                                  const graphics::DrawableText& text) -> std::unique_ptr<PropertySet> {
        if (compound == QLatin1String("pen"))
            return std::make_unique<PropertyCustomTraceItemPen>(PropertyInfo(QStringLiteral("line")), line);
        if (compound == QLatin1String("brush"))
            return std::make_unique<PropertyCustomShapeItemBrush>(PropertyInfo(QStringLiteral("fill")), rect);
        if (compound == QLatin1String("point"))
            return std::make_unique<PropertyGraphicsItemPosition>(PropertyInfo(QStringLiteral("position")), line);
        if (compound == QLatin1String("anchor"))
            return std::make_unique<PropertyAnchor>(PropertyInfo(QStringLiteral("anchor")), rect);
        return std::make_unique<StoredDrawableText>(PropertyInfo(QStringLiteral("text")), text);
    };
    const auto set = make(line, rect, drawable);
    QStringList seen;
    for (auto it = set->getBasicProperties(); !it.atEnd(); ++it)
        seen << it->getName();
    QCOMPARE(seen, names);
    QCOMPARE(set->getJsonValue().toObject(), json);

    // Reading the same JSON into a second, blank compound gives the same JSON back.
    graphics::LineItem blankLine;
    graphics::RectTextItem blankRect;
    const auto blank = make(blankLine, blankRect, graphics::DrawableText());
    blank->setJsonValue(json);
    QCOMPARE(blank->getJsonValue().toObject(), json);
}

void TestProperties::compoundMemberWritesKeepTheRest()
{
    graphics::LineItem line;
    line.setPen(QPen(QColor(10, 20, 30), 4, Qt::DotLine));
    PropertyCustomTraceItemPen pen(PropertyInfo(QStringLiteral("line")), line);

    pen.setPropertyValue(QStringLiteral("line.width"), 7);
    QCOMPARE(line.getPen(), QPen(QColor(10, 20, 30), 7, Qt::DotLine));
    pen.setPropertyValue(QStringLiteral("line.color"), QStringLiteral("#80ffffff"));
    QCOMPARE(line.getPen(), QPen(QColor(255, 255, 255, 128), 7, Qt::DotLine));
}

void TestProperties::styleIds_data()
{
    QTest::addColumn<bool>("isPen");
    QTest::addColumn<int>("qtStyle");
    QTest::addColumn<int>("id");

    QTest::newRow("no pen") << true << int(Qt::NoPen) << 0;
    QTest::newRow("dash dot dot line") << true << int(Qt::DashDotDotLine) << 5;
    QTest::newRow("custom dashes") << true << int(Qt::CustomDashLine) << 0;
    QTest::newRow("backward diagonal") << false << int(Qt::BDiagPattern) << 12;
    QTest::newRow("linear gradient") << false << int(Qt::LinearGradientPattern) << 0;
}

// The saved style ids, and what writing them back gives: styles outside the lists save as none.
void TestProperties::styleIds()
{
    QFETCH(bool, isPen);
    QFETCH(int, qtStyle);
    QFETCH(int, id);

    graphics::RectTextItem item;
    PropertyCustomTraceItemPen pen(PropertyInfo(QStringLiteral("border")), item);
    PropertyCustomShapeItemBrush brush(PropertyInfo(QStringLiteral("fill")), item);
    PropertySet& property = isPen ? static_cast<PropertySet&>(pen) : brush;
    const QString key = isPen ? QStringLiteral("border.style") : QStringLiteral("fill.style");
    if (qtStyle == Qt::CustomDashLine) {
        QPen custom(Qt::black);
        custom.setDashPattern({1.0, 3.0});
        item.setPen(custom);
    } else if (isPen) {
        item.setPen(QPen(Qt::black, 1, Qt::PenStyle(qtStyle)));
    } else if (qtStyle == Qt::LinearGradientPattern) {
        item.setBrush(QBrush(QLinearGradient(0, 0, 10, 10)));
    } else {
        item.setBrush(QBrush(Qt::black, Qt::BrushStyle(qtStyle)));
    }
    QCOMPARE(property.getPropertyValue(key), QVariant(id));

    property.setPropertyValue(key, id);
    const int written = isPen ? int(item.getPen().style()) : int(item.getBrush().style());
    QCOMPARE(written, id == 0 ? 0 : qtStyle);
    QVERIFY(isPen || !item.getBrush().gradient());

    // Ids past either end of the list mean none.
    property.setPropertyValue(key, isPen ? 6 : 15);
    QCOMPARE(isPen ? int(item.getPen().style()) : int(item.getBrush().style()), 0);
    property.setPropertyValue(key, id);
    property.setPropertyValue(key, -1);
    QCOMPARE(isPen ? int(item.getPen().style()) : int(item.getBrush().style()), 0);
}

void TestProperties::optionLists_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("options");

    QTest::newRow("pen style") << "border.style"
                               << QStringList{"No Line",  "Solid Line",    "Dash Line",
                                              "Dot Line", "Dash Dot Line", "Dash Dot Dot Line"};
    QTest::newRow("brush style") << "fill.style"
                                 << QStringList{"No Pattern", "Solid Pattern", "Dense 1 Pattern", "Dense 2 Pattern",
                                                "Dense 3 Pattern", "Dense 4 Pattern", "Dense 5 Pattern",
                                                "Dense 6 Pattern", "Dense 7 Pattern", "Horizontal Pattern",
                                                "Vertical Pattern", "Cross Pattern", "Backward Diagonal Pattern",
                                                "Forward Diagonal Pattern", "Diagonal Crossing Pattern"};
    QTest::newRow("horizontal anchor") << "anchor.horizontal" << QStringList{"Left", "Center", "Right"};
    QTest::newRow("vertical anchor") << "anchor.vertical" << QStringList{"Top", "Center", "Bottom"};
}

void TestProperties::optionLists()
{
    QFETCH(QString, name);
    QFETCH(QStringList, options);

    graphics::RectTextItem item;
    PropertySet set;
    set.beginProperties()
        .prop<PropertyCustomTraceItemPen>(PropertyInfo(QStringLiteral("border")), item)
        .prop<PropertyCustomShapeItemBrush>(PropertyInfo(QStringLiteral("fill")), item)
        .prop<PropertyAnchor>(PropertyInfo(QStringLiteral("anchor")), item)
        .endProperties();
    auto option = std::dynamic_pointer_cast<PropertyOption>(set.findBasicProperty(name));
    QVERIFY(option);
    QStringList names;
    int expectedId = 0;
    for (const auto& entry : option->getOptions()) {
        QCOMPARE(entry.first, expectedId++);
        names << entry.second;
    }
    QCOMPARE(names, options);
}

void TestProperties::untouchedEditorWritesNothing_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("edited");

    QTest::newRow("more decimals than shown") << "double" << QVariant(12.3456) << QVariant(3.5);
    QTest::newRow("double above the range") << "double" << QVariant(123456.0) << QVariant(-1.25);
    QTest::newRow("int below the range") << "int" << QVariant(-3) << QVariant(4);
}

void TestProperties::untouchedEditorWritesNothing()
{
    QFETCH(QString, kind);
    QFETCH(QVariant, value);
    QFETCH(QVariant, edited);

    const auto property = makeStored(kind);
    property->setVariant(value);
    auto widget = property->createWidget();
    property->updateFromWidget(widget.get());
    QCOMPARE(property->getVariant(), value);

    if (auto box = qobject_cast<QSpinBox*>(widget.get()))
        box->setValue(edited.toInt());
    else if (auto box = qobject_cast<QDoubleSpinBox*>(widget.get()))
        box->setValue(edited.toDouble());
    property->updateFromWidget(widget.get());
    QCOMPARE(property->getVariant(), edited);
}

void TestProperties::itemJson()
{
    graphics::PieChartTextItem item;
    item.setCount(12);
    Slice slice(item, 7, 3);
    const QJsonObject json = slice.getJsonValue().toObject();
    QCOMPARE(json.keys(), (QStringList{"data", "id", "parent-id", "type"}));
    QCOMPARE(QJsonValue(QJsonArray{json["id"], json["parent-id"], json["type"]}), QJsonValue(QJsonArray{7, 3, 2}));
    QJsonObject data = json.value(QStringLiteral("data")).toObject();
    QCOMPARE(data.value(QStringLiteral("count")), QJsonValue(12));
    // The order is not on the sheet but is still saved.
    QVERIFY(!slice.findBasicProperty(QStringLiteral("order"))->isWidgetAccessible());
    QVERIFY(data.contains(QStringLiteral("order")));

    // Only "data" is read back: identity belongs to the item manager.
    data.insert(QStringLiteral("count"), 40);
    slice.setJsonValue(QJsonObject{{"id", 99}, {"type", 5}, {"data", data}});
    QCOMPARE(slice.getId(), 7L);
    QCOMPARE(slice.getType(), 2);
    QCOMPARE(item.getCount(), 40);
}

void TestProperties::setParentRefusesCycles_data()
{
    QTest::addColumn<int>("target");
    QTest::newRow("itself") << 0;
    QTest::newRow("its grandchild") << 2;
}

void TestProperties::setParentRefusesCycles()
{
    QFETCH(int, target);
    auto top = std::make_unique<graphics::PieChartTextItem>();
    graphics::PieChartTextItem* items[3] = {top.get(), new graphics::PieChartTextItem(top.get()), nullptr};
    items[2] = new graphics::PieChartTextItem(items[1]);
    Slice slice(*items[0], 1, 0);
    Slice parent(*items[target], 1 + target, 0);
    slice.setParent(&parent);
    QCOMPARE(items[0]->parentItem(), nullptr);
    QCOMPARE(slice.getParentId(), 0L);
    QCOMPARE(items[2]->parentItem(), items[1]);
}

void TestProperties::setParentToTheSameParentKeepsCounts()
{
    graphics::PieChartTextItem root;
    auto child = std::make_unique<graphics::PieChartTextItem>();
    child->setCount(5);
    root.setCount(1);
    Slice rootSlice(root, 1, 0);
    Slice childSlice(*child.release(), 2, 0);
    childSlice.setParent(&rootSlice);
    QCOMPARE(root.getTotal(), 6);
    QCOMPARE(childSlice.getParentId(), 1L);
    QCOMPARE(rootSlice.getChildrenId(), std::vector<long>{2});

    // A fresh wrapper of the same child, as the item manager makes on every lookup.
    Slice again(childSlice.getItem(), 2, 1);
    again.setParent(&rootSlice);
    QCOMPARE(root.getTotal(), 6);
    QCOMPARE(childSlice.getItem().parentItem(), &root);
}

QTEST_MAIN(TestProperties)
#include "tst_properties.moc"
