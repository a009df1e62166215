#pragma once

#include "CtlArguments.h"

#include <memory>

/// The running Glowdeck on the session bus, as glowdeckctl uses it: lists come from its live state (no
/// request to the bridge), changes go into its queues, so they are merged and paced with the window's and
/// shown there at once. Only a Glowdeck that runs with the same settings file serves a run.
class CtlApp final
{
public:
    /// Whether the Glowdeck of the settings file of `invocation` runs and is to run this command: a list, a
    /// change, all-on or all-off without --direct, --bridge, --key or --trust-root.
    static bool serves(const CtlInvocation& invocation);
    /// Runs the command through it; returns the exit status, the reason of a failure printed.
    static int run(const CtlInvocation& invocation);
    /// Whether a Glowdeck with the settings file `file` runs; status says so.
    static bool runsWith(const QString& file);
};
