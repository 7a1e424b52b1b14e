#pragma once

#include <QString>
#include <QVector>
#include <QWidget>

class QLabel;
class QProgressBar;
class QVBoxLayout;

namespace nu {

// Shows the progress levels of an AsyncTask: one label and bar per level, level 0 on top. An upper
// bar also advances inside its current step by the fraction done of the level below it.
class MultiProgressWidget : public QWidget
{
    Q_OBJECT
public:
    class Block : public QWidget
    {
    public:
        explicit Block(QWidget* parent = nullptr);

        void setProgress(int value, int maximum, const QString& message);
        void setSubProgress(int subValue, int subMaximum);
        int getValue() const { return value; }
        int getMax() const { return maximum; }
        QString getMessage() const;
        int getBarValue() const;

    private:
        void setBar(double barValue);

        int value = 0;
        int maximum = 0;
        QLabel* label = nullptr;
        QProgressBar* bar = nullptr;
    };

    explicit MultiProgressWidget(QWidget* parent = nullptr);

    int getLevelCount() const { return blocks.size(); }
    const Block* getBlock(int level) const;

public slots:
    void slotProgressChanged(int level, int value, int maximum, QString message);

protected:
    void createToLevel(int level);
    void deleteToLevel(int level);

private:
    QVBoxLayout* layout = nullptr;
    QVector<Block*> blocks;
};

} // namespace nu
