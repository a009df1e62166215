#include "app/DesktopAppearance.h"

// macOS and Windows: Qt follows the system's appearance itself.
std::unique_ptr<DesktopAppearance> createDesktopAppearance()
{
    return std::make_unique<DesktopAppearance>();
}
