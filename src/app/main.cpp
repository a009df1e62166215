#include "app/Launcher.h"

#include <QElapsedTimer>

int main(int argc, char** argv)
{
    QElapsedTimer startupClock;
    startupClock.start();
    return runGlowdeck(argc, argv, startupClock);
}
