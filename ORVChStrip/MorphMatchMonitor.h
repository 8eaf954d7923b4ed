#pragma once

#include <QBasicTimer>
#include <QObject>

#include <vector>

class IMemAPI;
class ParameterLookup;

// Tells whether the parameters that the morph knob moves still hold the values
// of the current morph position. Requests are coalesced: a burst of host
// updates within 10 ms leads to one comparison, so a morph sweep that moves
// fifteen parameters per step costs one pass over them.
class MorphMatchMonitor : public QObject
{
    Q_OBJECT

public:
    explicit MorphMatchMonitor(QObject *parent = nullptr);

    // Looks the morphing parameters up for this memory and channel.
    void attach(const ParameterLookup &lookup, IMemAPI *memAPI, unsigned short ch);
    void detach();

    bool isPending() const { return m_pending; }
    bool matches() const { return m_matches; }
    int comparisonCount() const { return m_comparisons; }

public slots:
    void request();
    // Runs a pending comparison at once.
    void compareNow();

signals:
    void matchChanged(bool matches);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    bool compare() const;
    void setMatches(bool matches);

    // The morphing parameters the model knows, in list order. The editor
    // observes them; this class only reads them.
    std::vector<unsigned short> m_ids;
    IMemAPI *m_pMemAPI = nullptr;
    unsigned short m_ch = 0;
    QBasicTimer m_timer;
    bool m_pending = false;
    bool m_matches = true;
    int m_comparisons = 0;
};
