#pragma once

#include "bridge/BridgeEvents.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>

class ActionQueue;
class BridgeLink;
class BridgeEventStream;
class QNetworkAccessManager;

/// Brings the bridge's pushed changes into the shared state as they come: keeps its event stream open while
/// the bridge is paired over HTTPS, changes the lamps and rooms an event names in place, and asks for a read
/// of a list where an event cannot say more (a lamp added, a room renamed), at most once a second per list.
/// Whether the stream is live is published as `BridgeHome::liveUpdates`; the connection reads the bridge
/// every 3.5 s only while it is not. Runs on the main thread.
///
/// An event may tell the bridge's state from before the user's own change reached it: a field the user
/// changed within `ownChangeShield`, or has a change of waiting in the bridge's queue (which tells of every
/// change of its pending list), is left as the user set it, and
/// the list is read once the user has let go. The fields are those the queued request really writes: a
/// brightness change also switches the lamp or room on or off, so it holds the switch as well.
class LiveUpdates final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LiveUpdates)

public:
    static constexpr std::chrono::milliseconds relistSpacing{1000};
    static constexpr std::chrono::milliseconds ownChangeShield{2500};

    enum List
    {
        lights = 1,
        groups = 2,
        scenes = 4,
    };

    /// What an event can tell of a lamp or room, as far as the user's own changes write it.
    enum Field
    {
        on = 1,
        brightness = 2,
        colour = 4,
        whiteTone = 8,
    };

    /// `GLOWDECK_EVENT_STREAM=off` in the environment keeps the stream closed (to compare with reading).
    /// The stream goes through `streamNetwork`.
    LiveUpdates(BridgeLink& settings, QNetworkAccessManager& streamNetwork, const ActionQueue& queue,
                QObject* parent = nullptr);
    ~LiveUpdates() override;

    /// Opens the stream of the paired bridge, or keeps it open; over plain HTTP, or switched off, it stays
    /// closed and the bridge is read as before.
    void start();
    /// Closes it (sleep, quit, disconnect); the state no longer counts as live.
    void stop();

    /// Applies the changes of one event to the shared state, and asks for the reads it needs.
    void apply(const BridgeEventBatch& batch);

    BridgeEventStream& stream() const { return *m_stream; }
    /// The clock behind the shield of the user's own changes; tests replace it.
    void setClock(std::function<QDateTime()> now) { m_now = std::move(now); }

Q_SIGNALS:
    /// The stream opened: what changed before is not told, so the lists must be read afresh.
    void streamOpened();
    /// These lists (a combination of `List`) need a read.
    void readRequested(int lists);

private:
    /// The fields (a combination of `Field`) that a change's body writes: "on"; "bri" or "bri_inc" the
    /// brightness; "hue", "sat" or "xy" the colour; "ct" the white tone. None for a body that is not a JSON
    /// object.
    static int fieldsWritten(const QByteArray& body);
    /// Whether the user's own change of `field` of the lamp or group `id` is too fresh to be overwritten.
    bool shielded(bool group, const QString& id, Field field) const;
    void noteQueuedChanges();
    /// Asks for a read of `lists` now, or as soon as a second has passed since the last one of each.
    void requestRead(int lists);
    void onRelistDue();

    BridgeLink& m_settings;
    const ActionQueue& m_queue;
    BridgeEventStream* m_stream;
    bool m_enabled = true;
    QString m_unavailableReason; // the last one logged
    std::function<QDateTime()> m_now = [] { return QDateTime::currentDateTimeUtc(); };
    /// When the user last changed a field, by "l|g" + id + "/" + Field.
    QHash<QString, QDateTime> m_ownChanges;
    /// When the user last switched all lamps at once (room "0", "switch everything off"): that holds every
    /// lamp's and room's switch.
    QDateTime m_everythingSwitchedAt;
    QElapsedTimer m_lastRelist[3];
    int m_relistDue = 0;
    /// Fields were left alone for the user's sake: read their lists once the user let go.
    int m_afterShield = 0;
    QTimer m_relistTimer;
    QTimer m_shieldTimer;
};
