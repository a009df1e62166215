#include "app/WindowCompositing.h"

// macOS and Windows compose every window.
bool isWindowCompositingActive()
{
    return true;
}
