// Ostra/Frame/Counter.cpp
#include <Ostra/Frame/Counter.h>

// All operations are a few instructions and stand in the header.
static_assert(sizeof(CT_Counter) == 4, "a counter is its number");
