// tests/Support/SmallStack.h: work on a thread with little stack.
#pragma once

#include <functional>

// Runs the work to its end on a thread of its own, whose stack has 256 KB.
void OnSmallStack(const std::function<void()>& work);
