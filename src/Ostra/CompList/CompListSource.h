// Ostra/CompList/CompListSource.h: the name of CT_CompList in trails, for its sources. Internal.
#pragma once

#include <Ostra/Frame/Report.h>

static constexpr char qccz_Source[] = "Ostra/CompList/CompList";
