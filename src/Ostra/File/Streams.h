// Ostra/File/Streams.h: the stream library of the platform. Internal.
//
// Some of its names are those of the host's C library as well. Where the platform's own services
// are supplied beside the host's, such names stand in this namespace; elsewhere it is empty, and a
// name asked for in it is found in the standard library.
#pragma once

#include <windows.h>

#include <cstdio>

namespace winapi::streams
{
using namespace std;
}

namespace streams = winapi::streams;
