#pragma once

#include "CtlArguments.h"

#include <QCoreApplication>
#include <QString>

#include <chrono>
#include <cstdio>
#include <memory>

class BridgeNetwork;

/// What the command runners of glowdeckctl share: output and the settings file.
namespace Ctl {

/// The texts of glowdeckctl, in the user's language: `Ctl::Text::tr("…")`, one context for the whole tool.
class Text
{
    Q_DECLARE_TR_FUNCTIONS(glowdeckctl)
};

/// Writes `text` as UTF-8 and flushes, so lines keep their order with those the libraries print.
void write(std::FILE* stream, const QString& text);
/// One line on standard error, after "glowdeckctl: ".
void printError(const QString& line);
/// `text` with control characters and bidirectional overrides replaced by '?': names and addresses from the
/// network must not reach the terminal as they are. Other characters, joiners of emoji included, stay.
QString printable(QString text);
/// --settings, else $GLOWDECK_SETTINGS, else the default file.
QString settingsFileName(const CtlInvocation& invocation);
/// The network access of one run, trusting GLOWDECK_BRIDGE_TRUST_ROOTS and --trust-root beside the bridge
/// maker's authorities (each said on standard error); null, with the reason printed, when one cannot be read.
std::unique_ptr<BridgeNetwork> makeNetwork(const CtlInvocation& invocation);
/// `sentence` (a library's message) as a part of another: without its final full stop, and its first word in
/// lower case unless it is an abbreviation such as "HTTP".
QString clause(const QString& sentence);
/// "2.5" for 2500 ms.
QString seconds(std::chrono::milliseconds duration);

} // namespace Ctl
