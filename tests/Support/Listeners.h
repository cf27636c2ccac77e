// tests/Support/Listeners.h: further listeners that a test program's sources add to its main.
#pragma once

#include <gtest/gtest.h>

#include <vector>

std::vector<testing::TestEventListener* (*)()>& ListenerFactories();

// Adds a listener; stands at namespace scope of a source.
struct AddListener
{
    explicit AddListener(testing::TestEventListener* (*factory)())
    {
        ListenerFactories().push_back(factory);
    }
};
