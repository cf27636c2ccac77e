// System/Forum/Forum.cpp: an object that tells others about changes.
#include <System/Forum/Forum.h>

#include <cstring>

// ---- Construction ---------------------------------------------------------------------------

CT_Forum::CT_Forum() : co_Listeners(sizeof(CT_Forum*)) {}

CT_Forum::CT_Forum(const CT_Forum* pcco_Forum) : co_Listeners(sizeof(CT_Forum*))
{
    v_Init(pcco_Forum);
}

CT_Forum::CT_Forum(CT_Type*) : co_Listeners(sizeof(CT_Forum*))
{
    if (!CT_Type::sb_InConstruct(this))
        return;
    CT_Type::sv_Enter(this, &sco_Type);
    if (this == &sco_Object)
        sco_Type.v_Enter();
}

CT_Forum::CT_Forum(const CT_Forum& co_Other) : co_Listeners(sizeof(CT_Forum*))
{
    v_Copy(co_Other);
}

CT_Forum& CT_Forum::operator=(const CT_Forum& co_Other)
{
    v_Copy(co_Other);
    return *this;
}

CT_Forum::~CT_Forum()
{
    if (this == &sco_Object)
        CT_Type::sv_ToDestruct(&sco_Type);
    CT_Type::sb_InDestruct(this);
}

void CT_Forum::v_Init(const CT_Forum* pcco_Forum)
{
    co_Listeners.v_Set(&pcco_Forum->co_Listeners);
}

void CT_Forum::v_Copy(const CT_Forum& co_Other)
{
    // Kept: a list that stood here isn't let go of, and the copied one isn't held.
    std::memcpy(static_cast<void*>(&co_Listeners), static_cast<const void*>(&co_Other.co_Listeners),
                sizeof(co_Listeners));
}

// ---- Type -----------------------------------------------------------------------------------

const CT_Type* CT_Forum::spcco_GetType()
{
    return &sco_Type;
}

const CT_Type* CT_Forum::vpcco_GetType() const
{
    return &sco_Type;
}

void* CT_Forum::vpv_IsA(const CT_Type* pcco_Type) const
{
    return pcco_Type == &sco_Type ? const_cast<CT_Forum*>(this) : nullptr;
}

void* CT_Forum::vpv_IsKindOf(const CT_Type* pcco_Type) const
{
    return sco_Type.pv_CastTo(const_cast<CT_Forum*>(this), pcco_Type);
}

// ---- What derived classes override ----------------------------------------------------------

void CT_Forum::vv_Update(CT_Forum* pco_Listener, unsigned, ...)
{
    // Kept: listeners learn only that something has changed.
    v_Speak(pco_Listener, UPDATE);
}

void CT_Forum::vv_Listen(CT_Forum*, unsigned, va_list) {}

unsigned CT_Forum::vn_Listen(CT_Forum*, unsigned, va_list)
{
    return 0;
}

// ---- Listeners ------------------------------------------------------------------------------

void CT_Forum::v_Set()
{
    co_Listeners.v_Set(8, 0, 0);
}

void CT_Forum::v_Set(const CT_Forum* pcco_Forum)
{
    v_Init(pcco_Forum);
}

void CT_Forum::v_AddListener(const CT_Forum* pcco_Listener)
{
    co_Listeners.v_Insert(&pcco_Listener);
}

void CT_Forum::v_RemoveListener(const CT_Forum* pcco_Listener)
{
    // The place of one that isn't listed is 0, where nothing is removed.
    co_Listeners.v_RemoveAt(co_Listeners.n_Find(&pcco_Listener));
}

// The listener at that place, or the next that isn't null, with the place behind it; null at the
// end. Listeners may come and go between two calls.
CT_Forum* CT_Forum::pco_Next(unsigned& n_At) const
{
    CT_Forum* pco_Listener = nullptr;
    while (!pco_Listener && n_At <= co_Listeners.n_GetCount())
        co_Listeners.v_GetAt(&pco_Listener, static_cast<int>(n_At++));
    return pco_Listener;
}

// ---- Speaking -------------------------------------------------------------------------------

void CT_Forum::v_Speak(CT_Forum* pco_Listener, unsigned n_Message, ...)
{
    va_list arguments;
    va_start(arguments, n_Message);
    v_SpeakVA(pco_Listener, n_Message, arguments);
    va_end(arguments);
}

void CT_Forum::v_SpeakVA(CT_Forum* pco_Listener, unsigned n_Message, va_list arguments)
{
    if (pco_Listener) {
        v_Tell(pco_Listener, n_Message, arguments);
        return;
    }
    // Kept: the walk is over the list as it stands at each step, not over a copy of it.
    unsigned n_At = 1;
    while ((pco_Listener = pco_Next(n_At)))
        v_Tell(pco_Listener, n_Message, arguments);
}

unsigned CT_Forum::n_Speak(CT_Forum* pco_Listener, unsigned n_Message, ...)
{
    va_list arguments;
    va_start(arguments, n_Message);
    const unsigned n_Answer = n_SpeakVA(pco_Listener, n_Message, arguments);
    va_end(arguments);
    return n_Answer;
}

unsigned CT_Forum::n_SpeakVA(CT_Forum* pco_Listener, unsigned n_Message, va_list arguments)
{
    if (pco_Listener)
        return n_Ask(pco_Listener, n_Message, arguments);
    unsigned n_At = 1;
    unsigned n_Answer = 0;
    while (!n_Answer && (pco_Listener = pco_Next(n_At)))
        n_Answer = n_Ask(pco_Listener, n_Message, arguments);
    return n_Answer;
}

// Each listener has a copy of the argument pointer, so that it reads from the first argument.
void CT_Forum::v_Tell(CT_Forum* pco_Listener, unsigned n_Message, va_list arguments)
{
    va_list copy;
    va_copy(copy, arguments);
    pco_Listener->vv_Listen(this, n_Message, copy);
    va_end(copy);
}

unsigned CT_Forum::n_Ask(CT_Forum* pco_Listener, unsigned n_Message, va_list arguments)
{
    va_list copy;
    va_copy(copy, arguments);
    const unsigned n_Answer = pco_Listener->vn_Listen(this, n_Message, copy);
    va_end(copy);
    return n_Answer;
}
