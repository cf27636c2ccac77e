// System/Forum/Forum.h: an object that tells others about changes.
#pragma once

#include <Ostra/ARRAY/VoidArray.h>
#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/RawCopy.h>
#include <Ostra/Frame/Type.h>

#include <cstdarg>

// A speaker with a list of listeners, themselves forums. It speaks to all of them in the order in
// which they were added, or to one that is named, on the list or not. What a message means is the
// matter of the derived classes; they override vv_Listen, or vn_Listen where a message is answered.
//
// All listeners get the same message and arguments, and each reads the arguments from the first
// one.
//
// Listeners may come and go while the forum speaks: one that is added is reached in the same walk,
// one removed behind the current place isn't. Where one at the current place or before it is
// removed, the next one is passed over.
//
// Owns:    its hold on the list, which forums made from one another by pointer share until one of
//          them changes; listeners are kept by pointer.
// Reports: nothing of its own; 60006 comes from the list's buffer when the heap is exhausted. The
//          listener then isn't added.
// Caller:  removes a listener before it is destroyed; the listeners aren't told of their forum's
//          end. Nothing guards against forums that listen in a circle. A copy by reference is no
//          hold on the list.
// Threads: one thread at a time, a forum with its listeners.
class OSTRA_API CT_Forum
{
public:
    // ---- Construction -----------------------------------------------------------------------

    // No listeners.
    CT_Forum();
    // Shares the other's list.
    explicit CT_Forum(const CT_Forum* pcco_Forum);
    // The specimen.
    explicit CT_Forum(CT_Type* pco_Type);
    // Kept: copies the words of the list without a hold on its block; the pointer forms share.
    OSTRA_RAW_COPY CT_Forum(const CT_Forum& co_Other);
    OSTRA_RAW_COPY CT_Forum& operator=(const CT_Forum& co_Other);

    virtual const CT_Type* vpcco_GetType() const;
    // This, if the object is exactly of that class; else null.
    virtual void* vpv_IsA(const CT_Type* pcco_Type) const;
    // The sub-object of that class, or null.
    virtual void* vpv_IsKindOf(const CT_Type* pcco_Type) const;
    virtual ~CT_Forum();

    static const CT_Type* spcco_GetType();

    // ---- What derived classes override --------------------------------------------------------

    // Speaks the message UPDATE to that listener, or to all for null. Kept: the number and what
    // follows it aren't passed on.
    virtual void vv_Update(CT_Forum* pco_Listener, unsigned n_Update, ...);
    // A message without answer; does nothing here.
    virtual void vv_Listen(CT_Forum* pco_Speaker, unsigned n_Message, va_list arguments);
    // A message with an answer, which is 0 here.
    virtual unsigned vn_Listen(CT_Forum* pco_Speaker, unsigned n_Message, va_list arguments);

    // ---- Listeners --------------------------------------------------------------------------

    // No listeners, or a share in the other's.
    void v_Set();
    void v_Set(const CT_Forum* pcco_Forum);
    // At the end of the list, however often it stands there already.
    void v_AddListener(const CT_Forum* pcco_Listener);
    // Where it stands first; nothing if it isn't listed.
    void v_RemoveListener(const CT_Forum* pcco_Listener);

    // ---- Speaking ---------------------------------------------------------------------------

    // To that listener, or to all for null.
    void v_Speak(CT_Forum* pco_Listener, unsigned n_Message, ...);
    void v_SpeakVA(CT_Forum* pco_Listener, unsigned n_Message, va_list arguments);
    // The same with an answer: the first that isn't 0, and the listeners behind don't hear of it.
    unsigned n_Speak(CT_Forum* pco_Listener, unsigned n_Message, ...);
    unsigned n_SpeakVA(CT_Forum* pco_Listener, unsigned n_Message, va_list arguments);

    // The message of vv_Update.
    static constexpr unsigned UPDATE = 0xFFFFFFFF;

    // The class's record and its specimen.
    static CT_Type sco_Type;
    static CT_Forum sco_Object;

private:
    void v_Init(const CT_Forum* pcco_Forum);
    void v_Copy(const CT_Forum& co_Other);
    CT_Forum* pco_Next(unsigned& n_At) const;
    void v_Tell(CT_Forum* pco_Listener, unsigned n_Message, va_list arguments);
    unsigned n_Ask(CT_Forum* pco_Listener, unsigned n_Message, va_list arguments);

    CT_VoidArray co_Listeners; // of CT_Forum*
};
