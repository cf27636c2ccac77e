// winapi/Base/HostLinked.cpp: the table of a program that holds the services themselves.
#include "Base/Host.h"

extern "C" const winapi::HostTable ostra_host;

namespace winapi
{
const HostTable* LoadHost()
{
    return &ostra_host;
}
} // namespace winapi
