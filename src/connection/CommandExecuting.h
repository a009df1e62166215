#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <variant>

/// A command name the login shell could not resolve to a program.
struct BashError
{
    enum class Kind
    {
        commandNotFound
    };
    Kind kind = Kind::commandNotFound;
    QString name; ///< the command that was looked for

    bool operator==(const BashError&) const = default;
};

/// Runs small programs for bridge discovery and the debug report. Every call is asynchronous and answers
/// exactly once, on the caller's thread; tests replace the whole interface with canned output.
class CommandExecuting
{
public:
    virtual ~CommandExecuting() = default;

    using PathResult = std::variant<QString, BashError>;

    /// Finds `name` the way the user's login shell does ("which" in "/bin/bash -l"), trimmed of surrounding
    /// whitespace; a shell that cannot run, or finds nothing, gives BashError::commandNotFound.
    virtual void resolveCommandPath(const QString& name, std::function<void(PathResult)> done) = 0;
    /// Runs the program and hands over its standard output as UTF-8 text (standard error is not read).
    virtual void runCommand(const QString& path, const QStringList& arguments,
                            std::function<void(QString)> done) = 0;
    /// Runs a bundled Ruby script through "/usr/bin/env ruby" after printing a deprecation warning;
    /// nothing when there is no such script.
    virtual void runScript(const QString& name, const QStringList& arguments,
                           std::function<void(std::optional<QString>)> done) = 0;
};
