// Ostra/Frame/Version.cpp
#include <Ostra/Frame/Version.h>

unsigned ostra_version()
{
    return OSTRA_VERSION;
}
