#include "nu/edit/coloreditwidget.h"
#include "nu/edit/fonteditwidget.h"
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

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFontComboBox>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLinearGradient>
#include <QLineEdit>
#include <QSpinBox>
#include <QtTest>

#include <memory>
#include <type_traits>

using namespace nu::edit;
namespace graphics = nu::graphics;

namespace {

// A value property over a value of its own, counting its writes.
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
    void setValue(Argument v) override
    {
        value = v;
        ++writes;
    }

    T value;
    int writes = 0;
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

class Receiver : public QObject
{
    Q_OBJECT
public:
    int calls = 0;
public slots:
    void applied() { ++calls; }
};

} // namespace

class TestProperties : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { Sorvik::initResources(); }
    void jsonReadsWrongKindsAsZero_data();
    void jsonReadsWrongKindsAsZero();
    void unreadableColoursAreInvalid_data();
    void unreadableColoursAreInvalid();
    void compoundKeysAndEncodings_data();
    void compoundKeysAndEncodings();
    void compoundMemberWritesKeepTheRest();
    void styleIdsRead_data();
    void styleIdsRead();
    void styleIdsWrite_data();
    void styleIdsWrite();
    void gradientBrushSavesAsNoPattern();
    void optionLists_data();
    void optionLists();
    void optionNamesMapBack_data();
    void optionNamesMapBack();
    void anchorOutsideTheEnumeration();
    void editorSignalReachesTheReceiver_data();
    void editorSignalReachesTheReceiver();
    void untouchedEditorWritesNothing_data();
    void untouchedEditorWritesNothing();
    void editorWithWrongWidgetIsIgnored();
    void fontEditorKeepsSizeWhenFamilyChanges();
    void rotationCountsCounterClockwise();
    void inaccessibleOrderStillSaves();
    void itemJson();
    void setParentRefusesCycles_data();
    void setParentRefusesCycles();
    void setParentToTheSameParentKeepsCounts();
    void setParentMovesAndDetaches();
};

void TestProperties::jsonReadsWrongKindsAsZero_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QJsonValue>("input");
    QTest::addColumn<QVariant>("expected");

    const QJsonValue missing(QJsonValue::Undefined);
    QTest::newRow("bool") << "bool" << QJsonValue(true) << QVariant(true);
    QTest::newRow("bool from string") << "bool" << QJsonValue("true") << QVariant(false);
    QTest::newRow("bool from number") << "bool" << QJsonValue(1) << QVariant(false);
    QTest::newRow("bool missing") << "bool" << missing << QVariant(false);
    QTest::newRow("int") << "int" << QJsonValue(-42) << QVariant(-42);
    QTest::newRow("int from fraction") << "int" << QJsonValue(2.5) << QVariant(0);
    QTest::newRow("int beyond 32 bits") << "int" << QJsonValue(3e9) << QVariant(0);
    QTest::newRow("int huge") << "int" << QJsonValue(1e300) << QVariant(0);
    QTest::newRow("int from string") << "int" << QJsonValue("12") << QVariant(0);
    QTest::newRow("int null") << "int" << QJsonValue() << QVariant(0);
    QTest::newRow("double") << "double" << QJsonValue(2.25) << QVariant(2.25);
    QTest::newRow("double huge") << "double" << QJsonValue(1e300) << QVariant(1e300);
    QTest::newRow("double from string") << "double" << QJsonValue("1.5") << QVariant(0.0);
    QTest::newRow("double from bool") << "double" << QJsonValue(true) << QVariant(0.0);
    QTest::newRow("double from array") << "double" << QJsonValue(QJsonArray{1.5}) << QVariant(0.0);
    QTest::newRow("string") << "string" << QJsonValue("Bacteria") << QVariant("Bacteria");
    QTest::newRow("string from number") << "string" << QJsonValue(5) << QVariant("");
    QTest::newRow("string missing") << "string" << missing << QVariant("");
    QTest::newRow("option") << "option" << QJsonValue(2) << QVariant(2);
    QTest::newRow("option from name") << "option" << QJsonValue("two") << QVariant(0);
    QTest::newRow("colour") << "color" << QJsonValue("#80ff0001") << QVariant("#80ff0001");
    QTest::newRow("colour without alpha") << "color" << QJsonValue("#00ff00") << QVariant("#ff00ff00");
    QTest::newRow("colour by name") << "color" << QJsonValue("red") << QVariant("#ffff0000");
    QTest::newRow("font") << "font" << QJsonValue(someFontString()) << QVariant(someFontString());
    QTest::newRow("font missing") << "font" << missing << QVariant(QFont().toString());
    QTest::newRow("font from number") << "font" << QJsonValue(12) << QVariant(QFont().toString());
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

void TestProperties::unreadableColoursAreInvalid_data()
{
    QTest::addColumn<QJsonValue>("input");
    QTest::newRow("empty") << QJsonValue("");
    QTest::newRow("missing") << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("nonsense") << QJsonValue("#12345");
    QTest::newRow("number") << QJsonValue(0xff00ff);
}

void TestProperties::unreadableColoursAreInvalid()
{
    QFETCH(QJsonValue, input);
    StoredColor colour(QStringLiteral("color"), Qt::blue);
    colour.setJsonValue(input);
    QVERIFY(!colour.getValue().isValid());
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

    std::unique_ptr<PropertySet> set;
    if (compound == QLatin1String("pen"))
        set = std::make_unique<PropertyCustomTraceItemPen>(PropertyInfo(QStringLiteral("line")), line);
    else if (compound == QLatin1String("brush"))
        set = std::make_unique<PropertyCustomShapeItemBrush>(PropertyInfo(QStringLiteral("fill")), rect);
    else if (compound == QLatin1String("point"))
        set = std::make_unique<PropertyGraphicsItemPosition>(PropertyInfo(QStringLiteral("position")), line);
    else if (compound == QLatin1String("anchor"))
        set = std::make_unique<PropertyAnchor>(PropertyInfo(QStringLiteral("anchor")), rect);
    else
        set = std::make_unique<StoredDrawableText>(PropertyInfo(QStringLiteral("text")), drawable);

    QStringList seen;
    for (auto it = set->getBasicProperties(); !it.atEnd(); ++it)
        seen << it->getName();
    QCOMPARE(seen, names);
    QCOMPARE(set->getJsonValue().toObject(), json);

    // Reading the same JSON into a second, blank compound gives the same JSON back.
    graphics::LineItem blankLine;
    graphics::RectTextItem blankRect;
    std::unique_ptr<PropertySet> blank;
    if (compound == QLatin1String("pen"))
        blank = std::make_unique<PropertyCustomTraceItemPen>(PropertyInfo(QStringLiteral("line")), blankLine);
    else if (compound == QLatin1String("brush"))
        blank = std::make_unique<PropertyCustomShapeItemBrush>(PropertyInfo(QStringLiteral("fill")), blankRect);
    else if (compound == QLatin1String("point"))
        blank = std::make_unique<PropertyGraphicsItemPosition>(PropertyInfo(QStringLiteral("position")), blankLine);
    else if (compound == QLatin1String("anchor"))
        blank = std::make_unique<PropertyAnchor>(PropertyInfo(QStringLiteral("anchor")), blankRect);
    else
        blank = std::make_unique<StoredDrawableText>(PropertyInfo(QStringLiteral("text")), graphics::DrawableText());
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
    pen.setPropertyValue(QStringLiteral("line.style"), 1);
    QCOMPARE(line.getPen(), QPen(QColor(255, 255, 255, 128), 7, Qt::SolidLine));
}

void TestProperties::styleIdsRead_data()
{
    QTest::addColumn<bool>("isPen");
    QTest::addColumn<int>("qtStyle");
    QTest::addColumn<int>("id");

    QTest::newRow("no pen") << true << int(Qt::NoPen) << 0;
    QTest::newRow("solid line") << true << int(Qt::SolidLine) << 1;
    QTest::newRow("dash dot dot line") << true << int(Qt::DashDotDotLine) << 5;
    QTest::newRow("custom dashes") << true << int(Qt::CustomDashLine) << 0;
    QTest::newRow("no brush") << false << int(Qt::NoBrush) << 0;
    QTest::newRow("dense 7") << false << int(Qt::Dense7Pattern) << 8;
    QTest::newRow("diagonal crossing") << false << int(Qt::DiagCrossPattern) << 14;
    QTest::newRow("linear gradient") << false << int(Qt::LinearGradientPattern) << 0;
    QTest::newRow("texture") << false << int(Qt::TexturePattern) << 0;
}

void TestProperties::styleIdsRead()
{
    QFETCH(bool, isPen);
    QFETCH(int, qtStyle);
    QFETCH(int, id);

    graphics::RectTextItem item;
    if (isPen) {
        QPen pen(Qt::black);
        if (qtStyle == Qt::CustomDashLine)
            pen.setDashPattern({1.0, 3.0});
        else
            pen.setStyle(Qt::PenStyle(qtStyle));
        item.setPen(pen);
        PropertyCustomTraceItemPen property(PropertyInfo(QStringLiteral("border")), item);
        QCOMPARE(property.getPropertyValue(QStringLiteral("border.style")), QVariant(id));
    } else {
        if (qtStyle == Qt::LinearGradientPattern)
            item.setBrush(QBrush(QLinearGradient(0, 0, 10, 10)));
        else if (qtStyle == Qt::TexturePattern)
            item.setBrush(QBrush(QPixmap(4, 4)));
        else
            item.setBrush(QBrush(Qt::black, Qt::BrushStyle(qtStyle)));
        QCOMPARE(int(item.getBrush().style()), qtStyle);
        PropertyCustomShapeItemBrush property(PropertyInfo(QStringLiteral("fill")), item);
        QCOMPARE(property.getPropertyValue(QStringLiteral("fill.style")), QVariant(id));
    }
}

void TestProperties::styleIdsWrite_data()
{
    QTest::addColumn<bool>("isPen");
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("qtStyle");

    QTest::newRow("dot line") << true << 3 << int(Qt::DotLine);
    QTest::newRow("first id past the pen list") << true << 6 << int(Qt::NoPen);
    QTest::newRow("negative pen id") << true << -1 << int(Qt::NoPen);
    QTest::newRow("backward diagonal") << false << 12 << int(Qt::BDiagPattern);
    QTest::newRow("first id past the brush list") << false << 15 << int(Qt::NoBrush);
    QTest::newRow("texture id") << false << 24 << int(Qt::NoBrush);
}

void TestProperties::styleIdsWrite()
{
    QFETCH(bool, isPen);
    QFETCH(int, id);
    QFETCH(int, qtStyle);

    graphics::RectTextItem item;
    item.setPen(QPen(Qt::black, 1, Qt::DashLine));
    item.setBrush(QBrush(Qt::black, Qt::Dense1Pattern));
    if (isPen) {
        PropertyCustomTraceItemPen property(PropertyInfo(QStringLiteral("border")), item);
        property.setPropertyValue(QStringLiteral("border.style"), id);
        QCOMPARE(int(item.getPen().style()), qtStyle);
    } else {
        PropertyCustomShapeItemBrush property(PropertyInfo(QStringLiteral("fill")), item);
        property.setPropertyValue(QStringLiteral("fill.style"), id);
        QCOMPARE(int(item.getBrush().style()), qtStyle);
    }
}

void TestProperties::gradientBrushSavesAsNoPattern()
{
    graphics::RectTextItem item;
    QLinearGradient gradient(0, 0, 10, 10);
    gradient.setColorAt(0, Qt::red);
    item.setBrush(QBrush(gradient));
    PropertyCustomShapeItemBrush saved(PropertyInfo(QStringLiteral("fill")), item);
    const QJsonValue json = saved.getJsonValue();
    QCOMPARE(json.toObject().value(QStringLiteral("fill.style")), QJsonValue(0));

    graphics::RectTextItem loaded;
    PropertyCustomShapeItemBrush property(PropertyInfo(QStringLiteral("fill")), loaded);
    property.setJsonValue(json);
    QCOMPARE(loaded.getBrush().style(), Qt::NoBrush);
    QVERIFY(!loaded.getBrush().gradient());

    // Writing the style onto the gradient brush itself drops the gradient as well.
    saved.setPropertyValue(QStringLiteral("fill.style"), 1);
    QCOMPARE(item.getBrush().style(), Qt::SolidPattern);
    QVERIFY(!item.getBrush().gradient());
}

void TestProperties::optionLists_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("options");

    QTest::newRow("pen style") << "border.style"
                               << QStringList{"No Line",  "Solid Line",    "Dash Line",
                                              "Dot Line", "Dash Dot Line", "Dash Dot Dot Line"};
    QTest::newRow("brush style") << "fill.style"
                                 << QStringList{"No Pattern",
                                                "Solid Pattern",
                                                "Dense 1 Pattern",
                                                "Dense 2 Pattern",
                                                "Dense 3 Pattern",
                                                "Dense 4 Pattern",
                                                "Dense 5 Pattern",
                                                "Dense 6 Pattern",
                                                "Dense 7 Pattern",
                                                "Horizontal Pattern",
                                                "Vertical Pattern",
                                                "Cross Pattern",
                                                "Backward Piagonal Pattern",
                                                "Forward Piagonal Pattern",
                                                "Diagonal Crossing Pattern"};
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

    // The combo box lists them in the same order and maps a choice back to its id.
    auto box = std::unique_ptr<QWidget>(option->createWidget());
    auto combo = qobject_cast<QComboBox*>(box.get());
    QVERIFY(combo);
    QCOMPARE(combo->count(), options.size());
    combo->setCurrentIndex(options.size() - 1);
    option->updateFromWidget(combo);
    QCOMPARE(option->getValue(), options.size() - 1);
}

void TestProperties::optionNamesMapBack_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("id");
    QTest::newRow("listed") << "Dash Line" << 2;
    QTest::newRow("first") << "No Line" << 0;
    QTest::newRow("other case") << "dash line" << 0;
    QTest::newRow("unknown") << "Wavy Line" << 0;
    QTest::newRow("empty") << "" << 0;
}

void TestProperties::optionNamesMapBack()
{
    QFETCH(QString, name);
    QFETCH(int, id);
    graphics::LineItem line;
    PropertyCustomTraceItemPen pen(PropertyInfo(QStringLiteral("line")), line);
    auto style = std::dynamic_pointer_cast<PropertyOption>(pen.findBasicProperty(QStringLiteral("line.style")));
    QVERIFY(style);
    QCOMPARE(style->getIdByName(name), id);
}

void TestProperties::anchorOutsideTheEnumeration()
{
    graphics::RectTextItem item;
    PropertyAnchor anchor(PropertyInfo(QStringLiteral("anchor")), item);
    anchor.setPropertyValue(QStringLiteral("anchor.horizontal"), 2);
    anchor.setPropertyValue(QStringLiteral("anchor.horizontal"), 3);
    anchor.setPropertyValue(QStringLiteral("anchor.vertical"), -1);
    QCOMPARE(item.getHorizontalAnchor(), graphics::AnchorItem::HorizontalAnchor::Right);
    QCOMPARE(item.getVerticalAnchor(), graphics::AnchorItem::VerticalAnchor::Center);

    item.setVerticalAnchor(graphics::AnchorItem::VerticalAnchor(7));
    QCOMPARE(anchor.getPropertyValue(QStringLiteral("anchor.vertical")), QVariant(1));
}

void TestProperties::editorSignalReachesTheReceiver_data()
{
    QTest::addColumn<QString>("kind");
    for (const char* kind : {"bool", "int", "double", "string", "option", "color", "font"})
        QTest::newRow(kind) << kind;
}

void TestProperties::editorSignalReachesTheReceiver()
{
    QFETCH(QString, kind);
    const auto property = makeStored(kind);
    Receiver receiver;
    auto widget = property->createWidget(&receiver, SLOT(applied()));
    QVERIFY(widget);
    QCOMPARE(receiver.calls, 0);

    // Refreshing an editor is not an edit.
    property->updateWidget(widget.get());
    QCOMPARE(receiver.calls, 0);

    if (auto box = qobject_cast<QCheckBox*>(widget.get()))
        box->click();
    else if (auto combo = qobject_cast<QComboBox*>(widget.get()))
        combo->setCurrentIndex(2);
    else if (auto color = qobject_cast<ColorEditWidget*>(widget.get()))
        color->setColor(Qt::blue);
    else if (auto font = qobject_cast<FontEditWidget*>(widget.get()))
        font->setFont(QFont(QStringLiteral("Sans"), 8));
    else
        QVERIFY(QMetaObject::invokeMethod(widget.get(), "editingFinished"));
    QCOMPARE(receiver.calls, 1);
}

void TestProperties::untouchedEditorWritesNothing_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("edited");

    QTest::newRow("more decimals than shown") << "double" << QVariant(12.3456) << QVariant(3.5);
    QTest::newRow("double above the range") << "double" << QVariant(123456.0) << QVariant(-1.25);
    QTest::newRow("int below the range") << "int" << QVariant(-3) << QVariant(4);
    QTest::newRow("int in range") << "int" << QVariant(12) << QVariant(13);
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

void TestProperties::editorWithWrongWidgetIsIgnored()
{
    StoredInteger integer(QStringLiteral("int"), 5);
    QLineEdit edit(QStringLiteral("77"));
    integer.updateWidget(&edit);
    integer.updateFromWidget(&edit);
    integer.updateFromWidget(nullptr);
    QCOMPARE(integer.value, 5);
    QCOMPARE(integer.writes, 0);
    QCOMPARE(edit.text(), QStringLiteral("77"));
}

void TestProperties::fontEditorKeepsSizeWhenFamilyChanges()
{
    QFont font(QStringLiteral("Serif"), 23);
    font.setItalic(true);
    StoredFont property(QStringLiteral("font"), font);
    auto widget = property.createWidget();
    auto editor = qobject_cast<FontEditWidget*>(widget.get());
    QVERIFY(editor);
    // Applying the sheet gives the font back whole, whatever families the system has.
    property.updateFromWidget(editor);
    QCOMPARE(property.value, font);

    auto combo = editor->findChild<QFontComboBox*>(QStringLiteral("fontComboBox"));
    QVERIFY(combo);
    if (combo->count() < 2)
        QSKIP("needs two font families");
    combo->setCurrentIndex(combo->currentIndex() == 0 ? 1 : 0);
    property.updateFromWidget(editor);
    QCOMPARE(property.value.family(), combo->currentFont().family());
    QCOMPARE(property.value.pointSize(), 23);
    QVERIFY(property.value.italic());
}

void TestProperties::rotationCountsCounterClockwise()
{
    graphics::LineItem line;
    PropertyGraphicsItemRotation rotation(PropertyInfo(QStringLiteral("rotation")), line);
    rotation.setVariant(30.0);
    QCOMPARE(line.rotation(), -30.0);
    line.setRotation(45);
    QCOMPARE(rotation.getJsonValue(), QJsonValue(-45.0));
}

void TestProperties::inaccessibleOrderStillSaves()
{
    graphics::PieChartTextItem item;
    graphics::PieChartTextItem parent;
    Slice slice(item, 3, 0);
    const auto order = slice.findBasicProperty(QStringLiteral("order"));
    QVERIFY(order);
    QVERIFY(!order->isWidgetAccessible());
    QVERIFY(slice.getJsonValue().toObject().value(QStringLiteral("data")).toObject().contains(QStringLiteral("order")));
    QVERIFY(PropertySet::Data(slice).contains(QStringLiteral("order")));
}

void TestProperties::itemJson()
{
    graphics::PieChartTextItem item;
    item.setCount(12);
    Slice slice(item, 7, 3);
    const QJsonObject json = slice.getJsonValue().toObject();
    QCOMPARE(json.keys(), (QStringList{"data", "id", "parent-id", "type"}));
    QCOMPARE(json.value(QStringLiteral("id")), QJsonValue(7));
    QCOMPARE(json.value(QStringLiteral("parent-id")), QJsonValue(3));
    QCOMPARE(json.value(QStringLiteral("type")), QJsonValue(2));
    QCOMPARE(json.value(QStringLiteral("data")).toObject().value(QStringLiteral("count")), QJsonValue(12));
    QCOMPARE(json.value(QStringLiteral("data")).toObject().value(QStringLiteral("border.width")), QJsonValue(1));

    // Only "data" is read back: identity belongs to the item manager.
    QJsonObject changed = json;
    changed.insert(QStringLiteral("id"), 99);
    changed.insert(QStringLiteral("type"), 5);
    QJsonObject data = json.value(QStringLiteral("data")).toObject();
    data.insert(QStringLiteral("count"), 40);
    changed.insert(QStringLiteral("data"), data);
    slice.setJsonValue(changed);
    QCOMPARE(slice.getId(), 7L);
    QCOMPARE(slice.getType(), 2);
    QCOMPARE(item.getCount(), 40);

    graphics::PieChartTextItem other;
    QVERIFY(slice == Slice(other, 7, 0));
    QVERIFY(slice != Slice(item, 8, 3));
}

void TestProperties::setParentRefusesCycles_data()
{
    QTest::addColumn<int>("target");
    QTest::newRow("itself") << 0;
    QTest::newRow("its child") << 1;
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

void TestProperties::setParentMovesAndDetaches()
{
    graphics::LineItem first;
    graphics::LineItem second;
    first.setEndPoint(QPointF(10, 0));
    auto owned = std::make_unique<graphics::LineItem>();
    graphics::LineItem* moving = owned.get();

    using Line = PropertyGraphicsItem<graphics::LineItem, 7>;
    struct Wrapper : Line
    {
        using Line::Line;
    };
    Wrapper firstWrapper(first, 1, 0);
    Wrapper secondWrapper(second, 2, 0);
    Wrapper movingWrapper(*owned.release(), 3, 0);

    movingWrapper.setParent(&firstWrapper);
    QCOMPARE(moving->parentItem(), &first);
    // A line hangs on its parent line's end.
    QCOMPARE(moving->pos(), QPointF(10, 0));

    movingWrapper.setParent(&secondWrapper);
    QCOMPARE(moving->parentItem(), &second);
    QCOMPARE(movingWrapper.getParentId(), 2L);

    movingWrapper.setParent(nullptr);
    QCOMPARE(moving->parentItem(), nullptr);
    QCOMPARE(movingWrapper.getParentId(), 0L);
    const std::unique_ptr<graphics::LineItem> cleanup(moving);
}

QTEST_MAIN(TestProperties)
#include "tst_properties.moc"
