// examples/Common/Failure.cpp
#include "Failure.h"

#include "Utf8.h"

namespace common
{
bool Failing()
{
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}

bool Failed(const char* source, unsigned line)
{
    if (!Failing())
        return false;
    CT_ErrorManager::spco_Get()->v_AddLocation(source, line);
    return true;
}

Failure Failure::Copy()
{
    const CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    Failure failure;
    failure.code = errors->n_GetErrorCode();
    failure.message = common::ToUtf8(errors->qcuz_GetErrorMessage());
    for (unsigned n = 1; n <= errors->n_GetLocationCount(); ++n)
        failure.trail.push_back(std::string(errors->qccz_GetLocationFileAt(n)) + ", line " +
                                std::to_string(errors->n_GetLocationLineAt(n)));
    return failure;
}

Failure Failure::Take()
{
    const Failure failure = Copy();
    CT_ErrorManager::spco_Get()->v_ClearError();
    return failure;
}

void Failure::Print(std::ostream& output, const std::string& program, const std::string& context,
                    bool trace) const
{
    std::string line = program + ": ";
    // The program's own messages have no code and say all themselves.
    if (code)
        line += context + ": ";
    line += message;
    // A file name may hold anything; the message stays one line.
    for (char& c : line)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            c = '?';
    output << line << '\n';
    if (trace)
        for (const std::string& place : trail)
            output << "    " << place << '\n';
}
} // namespace common
