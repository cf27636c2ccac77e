// winapi/Base/DatabaseHost.h: the functions behind Base/Database.h.
#pragma once

#include "Base/Database.h"

namespace winapi
{
extern const DatabaseTable databaseTable;
}
