// tests/Support/ErrorListener.cpp: a test leaves no error behind.
#include <Ostra/Frame/ErrorManager.h>

#include "Support/Listeners.h"

namespace
{
class ErrorListener : public testing::EmptyTestEventListener
{
    void OnTestEnd(const testing::TestInfo&) override
    {
        CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
        const bool left = errors->b_IsSetError() || errors->b_IsHoldError();
        EXPECT_FALSE(left) << "the test leaves error " << (left ? errors->n_GetErrorCode() : 0);
        if (left)
            errors->v_ClearError();
    }
};

const AddListener add([]() -> testing::TestEventListener* { return new ErrorListener; });
} // namespace
