#include "viewer/chartlegend.h"

#include "viewer/charttree.h"
#include "viewer/colourmap.h"
#include "viewer/palette.h"

#include <QFontMetricsF>
#include <QGraphicsItem>
#include <QPainter>

#include <algorithm>

namespace Sorvik {
namespace Viewer {

namespace {

class LegendItem : public QGraphicsItem
{
public:
    explicit LegendItem(const ChartLegend& l)
        : legend(l)
    {
    }
    QRectF boundingRect() const override { return QRectF(QPointF(), legend.getSize()); }
    void paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) override
    {
        legend.paint(*painter, QPointF());
    }

private:
    ChartLegend legend;
};

} // namespace

ChartLegend::ChartLegend(std::vector<Row> r, const QFont& f)
    : rows(std::move(r))
    , font(f)
{
}

ChartLegend ChartLegend::of(const ChartTree& tree, const ColourMap& colours, bool rawNames)
{
    std::vector<Row> rows;
    if (tree.isEmpty() || tree.at(0).total <= 0)
        return ChartLegend();
    const double whole = static_cast<double>(tree.at(0).total);
    std::vector<int> shown = tree.getFirstBranchingLevel();
    std::stable_sort(shown.begin(), shown.end(), [&tree](int a, int b) { return tree.at(a).total > tree.at(b).total; });
    qint64 rest = 0;
    int restNumber = 0;
    for (size_t k = 0; k < shown.size(); ++k) {
        const ChartTree::Node& node = tree.at(shown[k]);
        if (static_cast<int>(k) >= maximumRows - 1 && shown.size() > static_cast<size_t>(maximumRows)) {
            rest += node.total;
            ++restNumber;
            continue;
        }
        const QColor colour = colours.hasColour(shown[k]) ? colours.colourOf(shown[k]) : Palette::contextGrey();
        rows.push_back(Row{colour, tree.getName(shown[k], rawNames), 100.0 * node.total / whole});
    }
    if (restNumber > 0)
        rows.push_back(Row{Palette::othersGrey(), QStringLiteral("%1 others").arg(restNumber), 100.0 * rest / whole});
    return ChartLegend(std::move(rows));
}

QString ChartLegend::formatShare(double percent)
{
    // A taxon that is there never reads as none.
    if (percent > 0 && percent < 0.005)
        return QStringLiteral("< 0.01 %");
    const int decimals = percent >= 10 ? 0 : percent >= 1 ? 1 : 2;
    return QStringLiteral("%1 %").arg(QString::number(percent, 'f', decimals));
}

double ChartLegend::rowHeight() const
{
    return QFontMetricsF(font).height() * 1.35;
}

QSizeF ChartLegend::getSize() const
{
    if (rows.empty())
        return QSizeF();
    const QFontMetricsF metrics(font);
    double names = 0;
    double shares = 0;
    for (const Row& row : rows) {
        names = std::max(names, metrics.horizontalAdvance(row.name));
        shares = std::max(shares, metrics.horizontalAdvance(formatShare(row.share)));
    }
    const double swatch = metrics.height();
    return QSizeF(swatch * 1.6 + names + swatch + shares, rowHeight() * static_cast<double>(rows.size()));
}

void ChartLegend::paint(QPainter& painter, const QPointF& topLeft) const
{
    const QFontMetricsF metrics(font);
    const double swatch = metrics.height();
    const QSizeF size = getSize();
    painter.save();
    painter.setFont(font);
    double y = topLeft.y();
    for (const Row& row : rows) {
        const QRectF box(topLeft.x(), y + (rowHeight() - swatch) / 2, swatch, swatch);
        painter.setPen(QPen(QColor(0x99, 0x99, 0x99), 0));
        painter.setBrush(row.colour);
        painter.drawRect(box);
        painter.setPen(Qt::black);
        const QRectF text(box.right() + swatch * 0.6, y, size.width() - swatch * 1.6, rowHeight());
        painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter, row.name);
        painter.drawText(text, Qt::AlignRight | Qt::AlignVCenter, formatShare(row.share));
        y += rowHeight();
    }
    painter.restore();
}

std::unique_ptr<QGraphicsItem> ChartLegend::createItem() const
{
    return std::make_unique<LegendItem>(*this);
}

} // namespace Viewer
} // namespace Sorvik
