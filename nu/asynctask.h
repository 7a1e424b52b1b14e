#pragma once

#include <QMutex>
#include <QString>
#include <QThread>
#include <QVector>

#include <atomic>

namespace nu {

// A job that runs on its own thread and publishes a short list of progress levels (level 0 the
// overall progress, deeper levels the current step). Once cancelled or failed, it stays so and
// ignores every further progress update, so the last message shown is the one that explains why.
class AsyncTask : public QThread
{
    Q_OBJECT
public:
    enum State { Running = 0, Cancelled = 1, Failed = 2 };

    struct Progress
    {
        int maximum = 0;
        int value = 0;
        QString message;
    };

    explicit AsyncTask(QObject* parent = nullptr);

    int getState() const { return state.load(); }
    bool isFinished() const { return state.load() != Running; }
    QString getErrorMessage() const;
    Progress getProgress(int level) const;

public slots:
    virtual void slotSetCancelled();

signals:
    void progressChanged(int level, int value, int maximum, QString message);

protected:
    void setProgressMax(int level, int maximum);
    void setProgressValue(int level, int value);
    void setProgressMessage(int level, const QString& message);
    void setProgressFinished(int level);
    void setErrorMessage(const QString& message);

private:
    template <typename Change>
    void changeProgress(int level, Change change);

    mutable QMutex mutex;
    QVector<Progress> progress;
    QString errorMessage;
    std::atomic<int> state{Running};
};

} // namespace nu
