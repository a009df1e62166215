#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

struct HttpResult;

/// The descriptions of the error entries of a bridge's answer. A bridge refuses a request, or each refused
/// part of a change, with [{"error":{"type":N,"address":"...","description":"..."}}, ...]; an entry without a
/// description gives "error <type>". The current interface answers {"errors":[{"description":"..."}],...}
/// instead. Empty when `body` is neither or holds no error.
QStringList bridgeErrors(const QByteArray& body);

/// What became of one change sent to the bridge.
struct WriteOutcome
{
    enum class Kind
    {
        accepted,   ///< a JSON array without errors (the current interface: an object), with a 2xx status
        refused,    ///< the bridge's error entries; `detail` holds their descriptions, joined by "; "
        partly,     ///< 207 of the current interface: some of the change was taken; `detail` says what not
        httpError,  ///< a status outside 2xx; `status` tells which
        unexpected, ///< a 2xx answer that is not the bridge's JSON array
        timedOut,   ///< no answer in time
        noAnswer,   ///< refused, unreachable or dropped; `detail` holds the network library's words
    };

    Kind kind = Kind::accepted;
    int status = 0;
    QString detail;
    /// The id the bridge gave a resource the change created (a schedule); empty otherwise.
    QString createdId;

    bool ok() const { return kind == Kind::accepted; }
};

/// Reads the answer to a state change as the bridge gives it.
WriteOutcome writeOutcome(const HttpResult& answer);
