#pragma once

class QElapsedTimer;

/// Parses the command line, checks for a desktop session, builds the application and runs it. Returns the
/// process's exit code.
int runGlowdeck(int argc, char** argv, const QElapsedTimer& startupClock);
