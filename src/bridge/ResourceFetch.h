#pragma once

#include "model/BridgeIdentity.h"
#include "model/CertificateSigner.h"
#include "model/HueGroup.h"
#include "model/HueLight.h"
#include "model/HueScene.h"

#include <QByteArray>
#include <QList>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QNetworkAccessManager;
class QNetworkReply;

enum class GroupsError
{
    connectionFailed,
    invalidData,
    noGroups
};
enum class LightsError
{
    connectionFailed,
    invalidData,
    noDevices
};
enum class ScenesError
{
    connectionFailed,
    invalidData,
    noScenes
};

/// The records of one list read, or the reason there are none.
template <typename Record, typename Error>
struct FetchResult
{
    QList<Record> records;
    std::optional<Error> error;
    /// The list's own message about a failure (printed by the fetch); empty for success and for a failed
    /// connection.
    QString message;
    /// The descriptions the bridge gave when it answered with its error array ("unauthorized user").
    QStringList bridgeErrors;
    /// For a failed connection: why, in the network library's words, and whether the read was given up for
    /// taking too long.
    QString connectionError;
    bool timedOut = false;
    /// The bridge's certificate was refused: why (also in `connectionError`). Nothing was sent.
    QString refusal;
    /// The answer's HTTP status, when there was an answer. Only a 2xx answer is read as the list.
    int httpStatus = 0;
    /// How many members a refused answer listed, when that was more than a bridge can hold; else 0.
    std::size_t tooMany = 0;
    /// Who vouched for the bridge's certificate, for a list read over HTTPS.
    CertificateSigner signer;

    bool ok() const { return !error.has_value(); }
};

using GroupsResult = FetchResult<HueGroup, GroupsError>;
using LightsResult = FetchResult<HueLight, LightsError>;
using ScenesResult = FetchResult<HueScene, ScenesError>;

/// A whole home read over the bridge's current interface in one request: the lamps as `records` (a failure
/// reads as a failed light read), its rooms and zones, its scenes and smart scenes, and the `grouped_light`
/// that holds every lamp.
struct HomeResult : LightsResult
{
    QList<HueGroup> groups;
    QList<HueScene> scenes;
    QString homeGroupedLight;

    /// The rooms and the scenes as the two list reads of the first interface would give them.
    GroupsResult groupsResult() const;
    ScenesResult scenesResult() const;
};

/// A list read gives up after this long without data; the periodic refresh is the retry.
inline constexpr std::chrono::milliseconds fetchTimeout{4000};
/// ... and after this long in all, however the data trickles in.
inline constexpr std::chrono::milliseconds fetchDeadline{10000};

/// A list read under way: aborting it ends it at once as a failed connection. Null once it has been answered.
using PendingRead = QPointer<QNetworkReply>;

/// The newest answer of one list that decoded into records, kept by whoever reads that list again and again:
/// a bridge whose lamps did not change sends the same bytes at every refresh, and an answer equal to the one
/// kept is not decoded again but answered with the same records (rooms and scenes keep their list
/// identities, so nothing downstream sees a change). Filled in and read on the main thread.
template <typename Result>
struct ListMemo
{
    QUrl url;
    QByteArray body;
    Result result;
};

// Turning an answer body into records: the steps after the transport, exposed for tests, benchmarks and
// fuzzing. They print nothing (they run on a worker thread); the fetch prints the result's `message`.
GroupsResult groupsFromBody(const QByteArray& body);
LightsResult lightsFromBody(const QByteArray& body);
ScenesResult scenesFromBody(const QByteArray& body);
/// The current interface's whole-home answer ({"errors":[],"data":[...]}) into records.
HomeResult homeFromClipBody(const QByteArray& body);

/// The text a user sees for a failed list read (the decode and none-found texts are also printed by the
/// fetch).
QString describe(GroupsError error);
QString describe(LightsError error);
QString describe(ScenesError error);

// The three reads: one GET each, bounded by fetchTimeout and fetchDeadline. The answer is decoded and its
// records derived on a worker thread; the completion runs once, on the network's (the main) thread, unless
// the network manager is gone by then.

/// Reads the rooms of one bridge ("/groups").
struct GroupsRead
{
    /// The base of every request (BridgeContact::endpoint()) and the key that goes in its path.
    QString endpoint;
    QString key;

    /// Optional: the newest answer that decoded, kept across reads.
    std::shared_ptr<ListMemo<GroupsResult>> memo;
    /// What the bridge must prove over HTTPS.
    BridgeIdentity identity;

    PendingRead fetch(QNetworkAccessManager& network, std::function<void(GroupsResult)> completion) const;
};

/// Reads the reachable lamps of one bridge ("/lights").
struct LightsRead
{
    /// The base of every request (BridgeContact::endpoint()) and the key that goes in its path.
    QString endpoint;
    QString key;

    /// Optional: the newest answer that decoded, kept across reads.
    std::shared_ptr<ListMemo<LightsResult>> memo;
    /// What the bridge must prove over HTTPS.
    BridgeIdentity identity;

    PendingRead fetch(QNetworkAccessManager& network, std::function<void(LightsResult)> completion) const;
};

/// Reads the scenes of one bridge ("/scenes").
struct ScenesRead
{
    /// The base of every request (BridgeContact::endpoint()) and the key that goes in its path.
    QString endpoint;
    QString key;

    /// Optional: the newest answer that decoded, kept across reads.
    std::shared_ptr<ListMemo<ScenesResult>> memo;
    /// What the bridge must prove over HTTPS.
    BridgeIdentity identity;

    PendingRead fetch(QNetworkAccessManager& network, std::function<void(ScenesResult)> completion) const;
};

/// Reads the whole home of a bridge over its current interface ("/clip/v2/resource"), the key in a header.
struct HomeRead
{
    /// The base of every request (BridgeContact::endpoint()) and the key that goes in its header.
    QString endpoint;
    QString key;

    /// Optional: the newest answer that decoded, kept across reads.
    std::shared_ptr<ListMemo<HomeResult>> memo;
    /// What the bridge must prove over HTTPS.
    BridgeIdentity identity;

    PendingRead fetch(QNetworkAccessManager& network, std::function<void(HomeResult)> completion) const;
};
