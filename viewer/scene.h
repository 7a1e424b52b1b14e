#pragma once

#include <QGraphicsScene>
#include <QHash>
#include <QString>

#include <memory>

namespace Sorvik {
namespace Viewer {

class PieChartItem;

// The scene of the drawn chart. It owns the chart's slices, keeps at most one of them selected
// and tells which one by its id (empty when none); a double click on a slice asks to enter it.
// The tool tip of a slice is its label with its share of the chart.
class Scene : public QGraphicsScene
{
    Q_OBJECT
public:
    explicit Scene(QObject* parent = nullptr);
    ~Scene() override;

    // Shows a chart in place of the previous one (deleted); null leaves the scene empty. Nothing
    // is selected afterwards, and no selection signal is sent for the change.
    void setPieChart(std::unique_ptr<PieChartItem> root);
    PieChartItem* getPieChart() const { return root; }
    // The chart with its labels, in scene coordinates; empty without a chart.
    QRectF getChartRect() const;
    // The smallest square about the chart's centre that holds the whole chart: fitting it keeps
    // the centre disc in the middle of the window however lopsided the outer rings are.
    QRectF getCentredChartRect() const;

    PieChartItem* getSelectedItem() const;
    // The slice with this id, or null.
    PieChartItem* findItem(const QString& id) const;
    // The slice at a scene point, or null (a point on the empty canvas).
    PieChartItem* sliceAt(const QPointF& scenePoint) const;

public slots:
    // Selects the slice with this id; an empty or unknown id clears the selection. Sends no
    // signal back, so that two views of one selection never echo each other.
    void slotSelectItem(const QString& id);

signals:
    void signalSelectedItem(const QString& id);
    void signalItemEntered();
    // The slice under the mouse changed: its id, or empty when it left the chart.
    void signalSliceHovered(const QString& id);

protected:
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    void helpEvent(QGraphicsSceneHelpEvent* event) override;

private:
    void slotSelectionChanged();

    PieChartItem* root = nullptr;
    // Filled on the first lookup after a new chart.
    mutable QHash<QString, PieChartItem*> index;
    QString selectedId;
    PieChartItem* hovered = nullptr;
    bool quiet = false;
};

} // namespace Viewer
} // namespace Sorvik
