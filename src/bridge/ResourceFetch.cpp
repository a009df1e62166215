#include "bridge/ResourceFetch.h"

#include "bridge/BridgeAnswer.h"
#include "bridge/BridgeUrl.h"
#include "bridge/ClipDecoder.h"
#include "bridge/ClipDerivation.h"
#include "bridge/HttpExchange.h"
#include "bridge/RecordDerivation.h"
#include "bridge/WireDecoder.h"
#include "state/Console.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSet>
#include <QThreadPool>

#include <string_view>
#include <unordered_set>

namespace {

/// The three lists differ in their path, their wording and their types; everything else is shared.
struct ListTraits
{
    const char* path;
    const char* noData;
    const char* undecodable;
    const char* noneFound;
    const char* wireName; ///< as the list's messages name the data
    const char* noun;     ///< one member of the list, plural
};

constexpr ListTraits groupsList{"groups",
                                "ERROR: No GROUPS data received. Giving up.",
                                "Error: Couldn't decode Hue GROUPS data due to unknown JSON data.",
                                "Error, no groups found on this Hue Bridge.",
                                "Hue GROUPS data",
                                "groups"};
constexpr ListTraits lightsList{"lights",
                                "ERROR: No data received. Giving up.",
                                "Error: Couldn't decode Hue data due to unknown JSON data.",
                                "Error, no devices found on this Hue Bridge.",
                                "Hue data",
                                "lights"};
constexpr ListTraits homeList{"",
                              "ERROR: No data received. Giving up.",
                              "Error: Couldn't decode the bridge's resources due to unknown JSON data.",
                              "Error, no devices found on this Hue Bridge.",
                              "The bridge's resources",
                              "resources"};
constexpr ListTraits scenesList{"scenes",
                                "ERROR: No SCENE data received. Giving up.",
                                "Error: Couldn't decode Hue SCENE data due to unknown JSON data.",
                                "Error, no scenes found on this Hue Bridge.",
                                "Hue SCENE data",
                                "scenes"};

template <typename Result>
Result failure(typename decltype(Result::error)::value_type error, const char* message = nullptr)
{
    Result result;
    result.error = error;
    if (message)
        result.message = QString::fromUtf8(message);
    return result;
}

/// Body to records: no body, undecodable body and a missing list each end in the list's own message and
/// error.
template <typename Record, typename Error, typename Response, typename WireList, typename Element>
FetchResult<Record, Error> fromBody(const QByteArray& body, const ListTraits& list, Error noneFound,
                                    std::optional<Response> (*decode)(QByteArrayView, std::size_t*),
                                    std::optional<WireList> Response::*elementsOf,
                                    std::optional<Record> (RecordDerivation::*derive)(const Element&))
{
    using Result = FetchResult<Record, Error>;
    if (body.isEmpty())
        return failure<Result>(Error::invalidData, list.noData);
    std::size_t members = 0;
    const std::optional<Response> response = decode(body, &members);
    if (!response) {
        Result result = failure<Result>(Error::invalidData, list.undecodable);
        if (members > WireDecoder::maxListMembers)
            result.tooMany = members;
        if (members > WireDecoder::maxListMembers)
            result.message = QStringLiteral("Error: %1 lists %2 %3, more than the %4 a bridge can hold; the "
                                            "answer was refused.")
                                 .arg(QString::fromUtf8(list.wireName))
                                 .arg(members)
                                 .arg(QString::fromUtf8(list.noun))
                                 .arg(WireDecoder::maxListMembers);
        result.bridgeErrors = bridgeErrors(body);
        return result;
    }
    const std::optional<WireList>& elements = (*response).*elementsOf;
    if (!elements)
        return failure<Result>(noneFound, list.noneFound);
    // Two members with one id: which one is the lamp? Neither is taken, as neither tool could say.
    std::unordered_set<std::string_view> ids;
    ids.reserve(elements->size());
    for (const Element& element : *elements) {
        if (!ids.insert(element.id).second) {
            Result result = failure<Result>(Error::invalidData, list.undecodable);
            result.message =
                QStringLiteral("Error: %1 lists the id \"%2\" twice; the answer was refused.")
                    .arg(QString::fromUtf8(list.wireName), QString::fromUtf8(element.id).left(40));
            return result;
        }
    }
    RecordDerivation derivation;
    Result result;
    result.records.reserve(qsizetype(elements->size()));
    for (const Element& element : *elements) {
        if (std::optional<Record> record = (derivation.*derive)(element))
            result.records.append(std::move(*record));
    }
    return result;
}

/// Hands `result` to `completion` on the main thread, after printing its message there (the printed lines go
/// to sinks that belong to the main thread), unless `network` is gone by then.
template <typename Result>
void deliver(QPointer<QNetworkAccessManager> network, const std::function<void(Result)>& completion,
             Result result)
{
    if (!network)
        return;
    if (!result.message.isEmpty())
        printLine(result.message);
    completion(std::move(result));
}

/// Reads `url`; `headerKey`, when not empty, goes in the current interface's header instead of the path.
template <typename Result>
PendingRead fetchList(QNetworkAccessManager& network, const QUrl& url, const QString& headerKey,
                      const BridgeIdentity& identity, const ListTraits& list,
                      std::function<void(Result)> completion, Result (*fromBody)(const QByteArray&),
                      std::shared_ptr<ListMemo<Result>> memo)
{
    using Error = typename decltype(Result::error)::value_type;
    // Only an address that cannot form a URL at all is caught here, so that a typo in the settings reads as
    // "no connection" instead of taking the program down.
    if (!url.isValid()) {
        QMetaObject::invokeMethod(
            &network, [completion] { completion(failure<Result>(Error::connectionFailed)); },
            Qt::QueuedConnection);
        return {};
    }
    QPointer<QNetworkAccessManager> guard(&network);
    QNetworkRequest request(url);
    if (!headerKey.isEmpty())
        request.setRawHeader(QByteArrayLiteral("hue-application-key"), headerKey.toUtf8());
    BridgeNetwork::prepare(request, identity);
    return sendHttpRequest(network, request, QByteArrayLiteral("GET"), {}, {fetchTimeout, fetchDeadline},
                           [=](const HttpResult& answer) {
                               if (answer.transportFailed) {
                                   Result result = failure<Result>(Error::connectionFailed);
                                   result.connectionError = answer.error;
                                   result.timedOut = answer.timedOut;
                                   result.refusal = answer.refusal;
                                   return deliver(guard, completion, result);
                               }
                               if (answer.tooLarge)
                                   return deliver(guard, completion,
                                                  failure<Result>(Error::invalidData, list.undecodable));
                               // A redirect or an error page may well hold JSON: it is not the list.
                               if (answer.status < 200 || answer.status > 299) {
                                   Result result = failure<Result>(Error::invalidData, list.undecodable);
                                   result.httpStatus = answer.status;
                                   result.bridgeErrors = bridgeErrors(answer.body);
                                   return deliver(guard, completion, result);
                               }
                               // Comparing the bytes costs a few microseconds; decoding them again, a hundred
                               // times that.
                               if (memo && memo->url == url && memo->body == answer.body) {
                                   Result result = memo->result;
                                   result.httpStatus = answer.status;
                                   result.signer = answer.certificate.signer;
                                   return deliver(guard, completion, std::move(result));
                               }
                               // Kept only once decoded well, and only for this address: another bridge or
                               // key starts afresh.
                               const auto remember = [memo, url, body = answer.body](const Result& result) {
                                   if (memo && result.ok())
                                       *memo = ListMemo<Result>{url, body, result};
                               };
                               const auto decode = [=, body = answer.body, status = answer.status,
                                                    signer = answer.certificate.signer] {
                                   Result result = fromBody(body);
                                   result.httpStatus = status;
                                   result.signer = signer;
                                   return result;
                               };
                               QCoreApplication* app = QCoreApplication::instance();
                               if (!app) {
                                   Result result = decode();
                                   remember(result);
                                   return deliver(guard, completion, std::move(result));
                               }
                               // Decoding a big answer takes a while: the menu stays responsive meanwhile.
                               // The application object outlives every pool task (it waits for them when it
                               // goes), so posting to it is always safe.
                               QThreadPool::globalInstance()->start([=] {
                                   Result result = decode();
                                   QMetaObject::invokeMethod(
                                       app,
                                       [=, result = std::move(result)]() mutable {
                                           remember(result);
                                           deliver(guard, completion, result);
                                       },
                                       Qt::QueuedConnection);
                               });
                           });
}

} // namespace

GroupsResult groupsFromBody(const QByteArray& body)
{
    return fromBody<HueGroup>(body, groupsList, GroupsError::noGroups, WireDecoder::decodeGroups,
                              &HueBridgeGroupsResponse::groups, &RecordDerivation::group);
}

LightsResult lightsFromBody(const QByteArray& body)
{
    return fromBody<HueLight>(body, lightsList, LightsError::noDevices, WireDecoder::decodeLights,
                              &HueBridgeLightsResponse::devices, &RecordDerivation::light);
}

ScenesResult scenesFromBody(const QByteArray& body)
{
    return fromBody<HueScene>(body, scenesList, ScenesError::noScenes, WireDecoder::decodeScenes,
                              &HueBridgeScenesResponse::scenes, &RecordDerivation::scene);
}

HomeResult homeFromClipBody(const QByteArray& body)
{
    if (body.isEmpty())
        return failure<HomeResult>(LightsError::invalidData, homeList.noData);
    std::size_t resources = 0;
    const std::optional<ClipHome> home = ClipDecoder::decodeHome(body, &resources);
    if (!home) {
        HomeResult result = failure<HomeResult>(LightsError::invalidData, homeList.undecodable);
        if (resources > ClipDecoder::maxResources) {
            result.tooMany = resources;
            result.message = QStringLiteral("Error: the bridge lists %1 resources, more than the %2 a bridge "
                                            "can hold; the answer was refused.")
                                 .arg(resources)
                                 .arg(ClipDecoder::maxResources);
        }
        result.bridgeErrors = bridgeErrors(body);
        return result;
    }
    // The ids the records keep must be unique per kind, or a change could reach the wrong lamp.
    ClipRecords records = ClipDerivation::derive(*home);
    const auto twice = [](const auto& list, auto idOf) -> QString {
        QSet<QString> ids;
        for (const auto& record : list) {
            if (ids.contains(idOf(record)))
                return idOf(record);
            ids.insert(idOf(record));
        }
        return {};
    };
    const QString repeated = twice(records.lights, [](const HueLight& l) { return l.lamp_id; }) +
                             twice(records.groups, [](const HueGroup& g) { return g.group_id; });
    if (!repeated.isEmpty()) {
        HomeResult result = failure<HomeResult>(LightsError::invalidData, homeList.undecodable);
        result.message =
            QStringLiteral("Error: the bridge lists the id \"%1\" twice; the answer was refused.")
                .arg(repeated.left(40));
        return result;
    }
    HomeResult result;
    result.records = std::move(records.lights);
    result.groups = std::move(records.groups);
    result.scenes = std::move(records.scenes);
    result.homeGroupedLight = records.homeGroupedLight;
    if (result.records.isEmpty() && home->lights.empty())
        return failure<HomeResult>(LightsError::noDevices, homeList.noneFound);
    return result;
}

namespace {

/// One list of the whole-home answer as the reader of that list alone would have had it, its failure
/// included.
template <typename Result, typename Error, typename Records>
Result relayed(const HomeResult& home, const Records& records)
{
    Result result;
    result.records = records;
    if (home.error)
        result.error =
            *home.error == LightsError::connectionFailed ? Error::connectionFailed : Error::invalidData;
    result.connectionError = home.connectionError;
    result.timedOut = home.timedOut;
    result.refusal = home.refusal;
    result.httpStatus = home.httpStatus;
    result.bridgeErrors = home.bridgeErrors;
    result.signer = home.signer;
    return result;
}

} // namespace

GroupsResult HomeResult::groupsResult() const
{
    return relayed<GroupsResult, GroupsError>(*this, groups);
}

ScenesResult HomeResult::scenesResult() const
{
    return relayed<ScenesResult, ScenesError>(*this, scenes);
}

PendingRead HomeRead::fetch(QNetworkAccessManager& network, std::function<void(HomeResult)> completion) const
{
    // An empty key would read as no key at all; the path form refuses it the same way.
    const QUrl url = key.isEmpty() ? QUrl() : bridgeClipUrl(endpoint);
    return fetchList(network, url, key, identity, homeList, std::move(completion), homeFromClipBody, memo);
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

QString describe(GroupsError error)
{
    return describeError(error, groupsList);
}

QString describe(LightsError error)
{
    return describeError(error, lightsList);
}

QString describe(ScenesError error)
{
    return describeError(error, scenesList);
}

PendingRead GroupsRead::fetch(QNetworkAccessManager& network,
                              std::function<void(GroupsResult)> completion) const
{
    return fetchList(network, bridgeResourceUrl(endpoint, key, {QString::fromUtf8(groupsList.path)}), {},
                     identity, groupsList, std::move(completion), groupsFromBody, memo);
}

PendingRead LightsRead::fetch(QNetworkAccessManager& network,
                              std::function<void(LightsResult)> completion) const
{
    return fetchList(network, bridgeResourceUrl(endpoint, key, {QString::fromUtf8(lightsList.path)}), {},
                     identity, lightsList, std::move(completion), lightsFromBody, memo);
}

PendingRead ScenesRead::fetch(QNetworkAccessManager& network,
                              std::function<void(ScenesResult)> completion) const
{
    return fetchList(network, bridgeResourceUrl(endpoint, key, {QString::fromUtf8(scenesList.path)}), {},
                     identity, scenesList, std::move(completion), scenesFromBody, memo);
}
