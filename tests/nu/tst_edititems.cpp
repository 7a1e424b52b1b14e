#include "nu/edit/arcbracketitem.h"
#include "nu/edit/arctextitem.h"
#include "nu/edit/lineitem.h"
#include "nu/edit/piechartitem.h"
#include "nu/edit/piecharttextitem.h"
#include "nu/edit/pieitem.h"
#include "nu/edit/recttextitem.h"
#include "nu/edit/subspaceitem.h"

#include "propertytrace.h"

#include <QtTest>

#include <memory>

using namespace nu::edit;
namespace graphics = nu::graphics;

namespace {

// Graphics items for one case, the wrapped one with or without a parent of the kind that matters.
struct Case
{
    std::unique_ptr<QGraphicsItem> root;
    std::unique_ptr<PropertyItem> wrapper;
};

template <class Graphics, class Wrapper, class Parent>
Case wrapped(bool withParent)
{
    Case c;
    auto item = std::make_unique<Graphics>();
    Graphics* graphics = item.get();
    if (withParent) {
        auto parent = std::make_unique<Parent>();
        parent->addChild(item.release());
        c.root = std::move(parent);
    } else {
        c.root = std::move(item);
    }
    c.wrapper = std::make_unique<Wrapper>(*graphics, 1, 0);
    return c;
}

Case make(const QString& which)
{
    using G = graphics::PieChartTextItem;
    if (which == QLatin1String("arc text"))
        return wrapped<graphics::ArcTextItem, ArcTextItem, G>(false);
    if (which == QLatin1String("centre slice"))
        return wrapped<graphics::PieChartTextItem, PieChartTextItem, G>(false);
    if (which == QLatin1String("outer slice"))
        return wrapped<graphics::PieChartTextItem, PieChartTextItem, G>(true);
    if (which == QLatin1String("bare centre slice"))
        return wrapped<graphics::PieChartItem, PieChartItem, G>(false);
    if (which == QLatin1String("bare outer slice"))
        return wrapped<graphics::PieChartItem, PieChartItem, G>(true);
    if (which == QLatin1String("free pie"))
        return wrapped<graphics::PieItem, PieItem, G>(false);
    if (which == QLatin1String("pie on a slice"))
        return wrapped<graphics::PieItem, PieItem, G>(true);
    if (which == QLatin1String("free bracket"))
        return wrapped<graphics::ArcBracketItem, ArcBracketItem, G>(false);
    if (which == QLatin1String("bracket on a slice"))
        return wrapped<graphics::ArcBracketItem, ArcBracketItem, G>(true);
    if (which == QLatin1String("straight text"))
        return wrapped<graphics::RectTextItem, RectTextItem, G>(false);
    if (which == QLatin1String("free line"))
        return wrapped<graphics::LineItem, LineItem, graphics::LineItem>(false);
    if (which == QLatin1String("line on a line"))
        return wrapped<graphics::LineItem, LineItem, graphics::LineItem>(true);
    if (which == QLatin1String("subspace on a line"))
        return wrapped<graphics::SubSpaceItem, SubSpaceItem, graphics::LineItem>(true);
    return Case();
}

} // namespace

class TestEditItems : public QObject
{
    Q_OBJECT
private slots:
    void propertyTree_data();
    void propertyTree();
    void labels_data();
    void labels();
    void orientation_data();
    void orientation();
    void sliceLabelWritesThroughTheSlice();
};

void TestEditItems::propertyTree_data()
{
    QTest::addColumn<QString>("which");
    QTest::addColumn<QString>("tree");
    QTest::addColumn<int>("type");

    const QString border = QStringLiteral("<border border.color border.width border.style >");
    const QString fill = QStringLiteral("<fill fill.color fill.style >");
    const QString line = QStringLiteral("<line line.color line.width line.style >");
    const QString position = QStringLiteral("<position position.x position.y >");
    const QString label = QStringLiteral("<text text.text text.font "
                                         "<text.pen text.pen.color text.pen.width text.pen.style > "
                                         "<text.brush text.brush.color text.brush.style > text.show >");
    const QString slice = "order count radius " + border + " " + fill;

    QTest::newRow("arc text") << "arc text"
                              << position + " text font radius rotation " + border + " " + fill + " orientation" << 1;
    QTest::newRow("centre slice") << "centre slice" << position + " rotation " + slice + " " + label << 2;
    QTest::newRow("outer slice") << "outer slice" << slice + " " + label << 2;
    QTest::newRow("bare centre slice") << "bare centre slice" << position + " rotation " + slice << 3;
    QTest::newRow("bare outer slice") << "bare outer slice" << slice << 3;
    QTest::newRow("free pie") << "free pie"
                              << position + " order percentage radius rotation " + border + " " + fill << 4;
    QTest::newRow("pie on a slice") << "pie on a slice" << "order percentage radius rotation " + border + " " + fill << 4;
    QTest::newRow("free bracket") << "free bracket" << position + " <angles rotation angle > radius tip-length " + line << 5;
    QTest::newRow("bracket on a slice") << "bracket on a slice" << position + " radius tip-length " + line << 5;
    QTest::newRow("straight text")
        << "straight text"
        << position + " text font rotation " + border + " " + fill + " <anchor anchor.horizontal anchor.vertical >" << 6;
    QTest::newRow("free line") << "free line" << position + " <end end.x end.y > " + line + " ignoretransformations" << 7;
    QTest::newRow("line on a line") << "line on a line" << "<end end.x end.y > " + line + " ignoretransformations" << 7;
    QTest::newRow("subspace on a line") << "subspace on a line" << position + " rotation ignoretransformations" << 8;
}

void TestEditItems::propertyTree()
{
    QFETCH(QString, which);
    QFETCH(QString, tree);
    QFETCH(int, type);
    const Case c = make(which);
    QVERIFY(c.wrapper);
    QCOMPARE(Sorvik::Test::tracePropertyTree(*c.wrapper), tree);
    QCOMPARE(c.wrapper->getType(), type);
}

void TestEditItems::labels_data()
{
    QTest::addColumn<QString>("which");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("description");

    QTest::newRow("tip length") << "free bracket" << "tip-length" << "tip length" << "tip length";
    QTest::newRow("point member") << "free line" << "end.y" << "y" << "y coordinate";
    QTest::newRow("anchor") << "straight text" << "anchor.vertical" << "vertical" << "vertical anchor";
}

void TestEditItems::labels()
{
    QFETCH(QString, which);
    QFETCH(QString, name);
    QFETCH(QString, label);
    QFETCH(QString, description);

    const Case c = make(which);
    const auto property = c.wrapper->findProperty(name);
    QVERIFY(property);
    QCOMPARE(property->getLabel(), label);
    QCOMPARE(property->getDescription(), description);
}

void TestEditItems::orientation_data()
{
    QTest::addColumn<int>("graphics");
    QTest::addColumn<int>("shown");
    QTest::addColumn<int>("written");
    QTest::addColumn<int>("result");

    QTest::newRow("inside") << 0 << 0 << 1 << 1;
    QTest::newRow("outside the enumeration") << 7 << 0 << 5 << 0;
}

void TestEditItems::orientation()
{
    QFETCH(int, graphics);
    QFETCH(int, shown);
    QFETCH(int, written);
    QFETCH(int, result);

    graphics::ArcTextItem item;
    item.setOrientation(graphics::ArcTextItem::Orientation(graphics));
    ArcTextItem text(item, 1, 0);
    QCOMPARE(text.getPropertyValue(QStringLiteral("orientation")), QVariant(shown));
    text.setPropertyValue(QStringLiteral("orientation"), written);
    QCOMPARE(int(item.getOrientation()), result);

    auto option = std::dynamic_pointer_cast<PropertyOption>(text.findBasicProperty(QStringLiteral("orientation")));
    QCOMPARE(option->getOptionName(1), QStringLiteral("Outside"));
    QCOMPARE(option->getOptionName(0), QStringLiteral("Inside"));
}

void TestEditItems::sliceLabelWritesThroughTheSlice()
{
    graphics::PieChartTextItem slice;
    PieChartTextItem wrapper(slice, 1, 0);
    wrapper.setPropertyValue(QStringLiteral("text.text"), QStringLiteral("Proteobacteria"));
    wrapper.setPropertyValue(QStringLiteral("text.pen.width"), 3);
    wrapper.setPropertyValue(QStringLiteral("text.show"), false);
    QCOMPARE(slice.getText().text, QStringLiteral("Proteobacteria"));
    QCOMPARE(slice.getText().pen.width(), 3);
    QVERIFY(!slice.getTextShow());
    QCOMPARE(slice.toolTip(), QStringLiteral("Proteobacteria"));
}

QTEST_MAIN(TestEditItems)
#include "tst_edititems.moc"
