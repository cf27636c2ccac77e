// examples/Common/Status.h: what the programs end with.
#pragma once

namespace common
{
// Exit statuses.
enum Status
{
    DONE = 0,
    FAILED = 1,
    USAGE = 2
};
} // namespace common
