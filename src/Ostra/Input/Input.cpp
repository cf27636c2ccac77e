// Ostra/Input/Input.cpp
#include <Ostra/Input/Input.h>

CT_Input::CT_Input(unsigned n_NewBuffer)
{
    v_SetBuffer(n_NewBuffer);
}

CT_Input::~CT_Input() {}
