// Ostra/Output/Output.cpp
#include <Ostra/Output/Output.h>

CT_Output::~CT_Output() {}
