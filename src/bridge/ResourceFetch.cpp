#include "bridge/ResourceFetch.h"

#include "bridge/HttpExchange.h"
#include "bridge/RecordDerivation.h"
#include "bridge/WireDecoder.h"
#include "state/Console.h"

#include <QNetworkAccessManager>
#include <QUrl>

static_assert(HueGroupsProtocol<HueCommunicationGroups>);
static_assert(HueDevicesProtocol<HueCommunicationLights>);
static_assert(HueScenesProtocol<HueCommunicationScenes>);

namespace {

/// The three lists differ in their path, their wording and their types; everything else is shared.
struct ListTraits
{
    const char* path;
    const char* noData;
    const char* undecodable;
    const char* noneFound;
};

constexpr ListTraits groupsList{"/groups", "ERROR: No GROUPS data received. Giving up.",
                                "Error: Couldn't decode Hue GROUPS data due to unknown JSON data.",
                                "Error, no groups found on this Hue Bridge."};
constexpr ListTraits lightsList{"/lights", "ERROR: No data received. Giving up.",
                                "Error: Couldn't decode Hue data due to unknown JSON data.",
                                "Error, no devices found on this Hue Bridge."};
constexpr ListTraits scenesList{"/scenes", "ERROR: No SCENE data received. Giving up.",
                                "Error: Couldn't decode Hue SCENE data due to unknown JSON data.",
                                "Error, no scenes found on this Hue Bridge."};

/// Body to records: no body, undecodable body and a missing list each end in the list's own message and
/// error.
template <typename Record, typename Error, typename Response, typename WireList, typename Element>
FetchResult<Record, Error> fromBody(const QByteArray& body, const QString& bridgeIP, const QString& apiKey,
                                    const ListTraits& list, Error noneFound,
                                    std::optional<Response> (*decode)(QByteArrayView),
                                    std::optional<WireList> Response::*elementsOf,
                                    std::optional<Record> (RecordDerivation::*derive)(const Element&))
{
    if (body.isEmpty()) {
        printLine(QString::fromUtf8(list.noData));
        return {{}, Error::invalidData};
    }
    const std::optional<Response> response = decode(body);
    if (!response) {
        printLine(QString::fromUtf8(list.undecodable));
        return {{}, Error::invalidData};
    }
    const std::optional<WireList>& elements = (*response).*elementsOf;
    if (!elements) {
        printLine(QString::fromUtf8(list.noneFound));
        return {{}, noneFound};
    }
    RecordDerivation derivation(bridgeIP, apiKey);
    QList<Record> records;
    records.reserve(qsizetype(elements->size()));
    for (const Element& element : *elements) {
        if (std::optional<Record> record = (derivation.*derive)(element))
            records.append(std::move(*record));
    }
    return {std::move(records), std::nullopt};
}

template <typename Result>
void fetchList(QNetworkAccessManager& network, const QString& bridgeIP, const QString& apiKey,
               const ListTraits& list, std::function<void(Result)> completion,
               Result (*fromBody)(const QByteArray&, const QString&, const QString&))
{
    using Error = typename decltype(Result::error)::value_type;
    // The address is used as stored; only one that cannot form a URL at all is caught here, so that a typo in
    // the settings reads as "no connection" instead of taking the program down.
    const QUrl url(QStringLiteral("http://") + bridgeIP + QStringLiteral("/api/") + apiKey +
                   QString::fromUtf8(list.path));
    if (!url.isValid()) {
        QMetaObject::invokeMethod(
            &network,
            [completion] {
                completion(Result{{}, Error::connectionFailed});
            },
            Qt::QueuedConnection);
        return;
    }
    sendHttpRequest(network, QNetworkRequest(url), QByteArrayLiteral("GET"), {}, fetchTimeout,
                    [=](const HttpResult& answer) {
                        if (answer.transportFailed)
                            return completion(Result{{}, Error::connectionFailed});
                        if (answer.tooLarge) {
                            printLine(QString::fromUtf8(list.undecodable));
                            return completion(Result{{}, Error::invalidData});
                        }
                        completion(fromBody(answer.body, bridgeIP, apiKey));
                    });
}

} // namespace

GroupsResult groupsFromBody(const QByteArray& body, const QString& bridgeIP, const QString& apiKey)
{
    return fromBody<HueGroup>(body, bridgeIP, apiKey, groupsList, BridgeDataType_Groups_Error::noGroups,
                              WireDecoder::decodeGroups, &HueBridgeGroupsResponse::groups,
                              &RecordDerivation::group);
}

LightsResult lightsFromBody(const QByteArray& body, const QString& bridgeIP, const QString& apiKey)
{
    return fromBody<HueLight>(body, bridgeIP, apiKey, lightsList, BridgeError::noDevices,
                              WireDecoder::decodeLights, &HueBridgeLightsResponse::devices,
                              &RecordDerivation::light);
}

ScenesResult scenesFromBody(const QByteArray& body, const QString& bridgeIP, const QString& apiKey)
{
    return fromBody<HueScene>(body, bridgeIP, apiKey, scenesList, BridgeDataType_Scenes_Error::noScenes,
                              WireDecoder::decodeScenes, &HueBridgeScenesResponse::scenes,
                              &RecordDerivation::scene);
}

namespace {

template <typename Error>
QString describeError(Error error, const ListTraits& list)
{
    switch (error) {
    case Error::connectionFailed:
        return QStringLiteral("Unable to connect to the Hue bridge.");
    case Error::invalidData:
        return QString::fromUtf8(list.undecodable);
    default:
        return QString::fromUtf8(list.noneFound);
    }
}

} // namespace

QString describe(BridgeDataType_Groups_Error error)
{
    return describeError(error, groupsList);
}

QString describe(BridgeError error)
{
    return describeError(error, lightsList);
}

QString describe(BridgeDataType_Scenes_Error error)
{
    return describeError(error, scenesList);
}

void HueCommunicationGroups::fetch(QNetworkAccessManager& network,
                                   std::function<void(GroupsResult)> completion) const
{
    fetchList(network, bridgeIP, apiKey, groupsList, std::move(completion), groupsFromBody);
}

void HueCommunicationLights::fetch(QNetworkAccessManager& network,
                                   std::function<void(LightsResult)> completion) const
{
    fetchList(network, bridgeIP, apiKey, lightsList, std::move(completion), lightsFromBody);
}

void HueCommunicationScenes::fetch(QNetworkAccessManager& network,
                                   std::function<void(ScenesResult)> completion) const
{
    fetchList(network, bridgeIP, apiKey, scenesList, std::move(completion), scenesFromBody);
}
