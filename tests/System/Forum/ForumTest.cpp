// tests/System/Forum/ForumTest.cpp: the class, its list, speaking and arguments.
#define OSTRA_RAW_COPIES
#include "Support/Private.h"
#include "Support/Slots.h"
#include "System/Forum/Listener.h"

#include <Ostra/String/CString.h>

#include <memory>
#include <type_traits>

OSTRA_PRIVATE(Listeners, CT_VoidArray CT_Forum::*, &CT_Forum::co_Listeners);

namespace
{
// A forum and three listeners that are not on its list.
struct Room
{
    Heard heard;
    CT_Forum forum;
    Listener a{&heard, "a"}, b{&heard, "b"}, c{&heard, "c"};

    void AddAll()
    {
        for (const Listener* listener : {&a, &b, &c})
            forum.v_AddListener(listener);
    }
    Heard Say(unsigned message)
    {
        heard.clear();
        forum.v_Speak(nullptr, message);
        return heard;
    }
};

const CT_VoidArray& List(const CT_Forum& forum)
{
    return forum.*Private(Listeners());
}

unsigned UsesOf(const CT_Forum& forum)
{
    return List(forum).pcco_GetBuffer()->n_GetUseCount();
}

const void* BlockOf(const CT_Forum& forum)
{
    return List(forum).pcco_GetBuffer()->qcv_Get();
}

// A place for a forum that holds a block without counting; nothing destructs it.
union Undestructed
{
    Undestructed() : forum() {}
    ~Undestructed() {}
    CT_Forum forum;
};

// Speaks with an argument pointer, and gives what it points to behind that.
int SpeakVA(CT_Forum* forum, CT_Forum* listener, int with_answer, ...)
{
    va_list arguments;
    va_start(arguments, with_answer);
    if (with_answer)
        forum->n_SpeakVA(listener, 5, arguments);
    else
        forum->v_SpeakVA(listener, 5, arguments);
    const int behind = Digits(arguments);
    va_end(arguments);
    return behind;
}
} // namespace

// ---- Class and life -------------------------------------------------------------------------

TEST(Forum, HasItsSevenSlotsInOrder)
{
    EXPECT_EQ(SlotOf(&CT_Forum::vpcco_GetType), 0U);
    EXPECT_EQ(SlotOf(&CT_Forum::vpv_IsA), 1U);
    EXPECT_EQ(SlotOf(&CT_Forum::vpv_IsKindOf), 2U);
    EXPECT_TRUE(std::has_virtual_destructor_v<CT_Forum>);
    EXPECT_EQ(SlotOf(&CT_Forum::vv_Update), 4U);
    EXPECT_EQ(SlotOf(&CT_Forum::vv_Listen), 5U);
    EXPECT_EQ(SlotOf(&CT_Forum::vn_Listen), 6U);
}

TEST(Forum, HasNoMembersButTheList)
{
    EXPECT_EQ(sizeof(CT_Forum), sizeof(void*) + sizeof(CT_VoidArray));
    const CT_Forum forum;
    EXPECT_EQ(List(forum).n_GetItemSize(), sizeof(void*));
    EXPECT_EQ(List(forum).n_GetGrowth(), 8U);
    EXPECT_EQ(List(forum).n_GetCount(), 0U);
}

TEST(Forum, TellsItsClass)
{
    const CT_Type* type = CT_Forum::spcco_GetType();
    EXPECT_STREQ(type->qccz_GetName(), "CT_Forum");
    EXPECT_EQ(type->n_GetTypes(), 1U);
    EXPECT_EQ(type->pcv_GetObject(), &CT_Forum::sco_Object);
    EXPECT_EQ(type, &CT_Forum::sco_Type);
    EXPECT_FALSE(CT_Type::sb_InConstruct(&CT_Forum::sco_Object));

    const CT_Forum forum;
    EXPECT_EQ(forum.vpcco_GetType(), type);
    EXPECT_EQ(forum.vpv_IsA(type), &forum);
    EXPECT_EQ(forum.vpv_IsA(CT_CString::spcco_GetType()), nullptr);
    EXPECT_EQ(forum.vpv_IsA(nullptr), nullptr);
    EXPECT_EQ(forum.vpv_IsKindOf(type), &forum);
    EXPECT_EQ(forum.vpv_IsKindOf(CT_CString::spcco_GetType()), nullptr);
    EXPECT_EQ(forum.vpv_IsKindOf(nullptr), nullptr);
}

TEST(Forum, SpecimenConstructorEntersNothingAfterStartUp)
{
    {
        CT_Forum forum(&CT_Forum::sco_Type);
        EXPECT_EQ(forum.n_Speak(nullptr, 1), 0U);
        EXPECT_EQ(List(forum).n_GetCount(), 0U);
    }
    EXPECT_EQ(CT_Forum::spcco_GetType()->n_GetTypes(), 1U);
}

TEST(Forum, AForumMadeFromAnotherSharesItsListUntilOneChanges)
{
    Room room;
    room.AddAll();
    CT_Forum copy(&room.forum);
    EXPECT_EQ(BlockOf(copy), BlockOf(room.forum));
    EXPECT_EQ(UsesOf(copy), 2U);
    copy.v_RemoveListener(&room.b);
    EXPECT_EQ(room.Say(1), (Heard{"a1", "b1", "c1"}));
    room.heard.clear();
    copy.v_Speak(nullptr, 2);
    EXPECT_EQ(room.heard, (Heard{"a2", "c2"}));
}

TEST(Forum, AForumSetToAnotherSharesItsList)
{
    Room room;
    room.AddAll();
    CT_Forum other;
    other.v_AddListener(&room.c);
    other.v_Set(&room.forum);
    EXPECT_EQ(BlockOf(other), BlockOf(room.forum));
    EXPECT_EQ(UsesOf(other), 2U);
    other.v_AddListener(&room.a);
    EXPECT_EQ(room.Say(1), (Heard{"a1", "b1", "c1"}));
    room.heard.clear();
    other.v_Speak(nullptr, 2);
    EXPECT_EQ(room.heard, (Heard{"a2", "b2", "c2", "a2"}));
}

TEST(Forum, SetEmptiesTheListAndLetsGoOfItsBlock)
{
    Room room;
    room.AddAll();
    const CT_Forum holder(&room.forum);
    room.forum.v_Set();
    EXPECT_EQ(room.Say(1), Heard());
    EXPECT_EQ(BlockOf(room.forum), nullptr);
    EXPECT_EQ(List(room.forum).n_GetGrowth(), 8U);
    EXPECT_EQ(List(holder).n_GetCount(), 3U);
    room.AddAll();
    EXPECT_EQ(room.Say(2), (Heard{"a2", "b2", "c2"}));
}

TEST(Forum, ACopyByReferenceTakesTheListWithoutAHoldOnIt)
{
    Room room;
    room.AddAll();
    Undestructed made, assigned;
    new (&made.forum) CT_Forum(room.forum);
    assigned.forum = room.forum;
    for (CT_Forum* copy : {&made.forum, &assigned.forum}) {
        EXPECT_EQ(BlockOf(*copy), BlockOf(room.forum));
        EXPECT_EQ(UsesOf(*copy), 1U);
        EXPECT_EQ(List(*copy).n_GetItemSize(), sizeof(void*));
        room.heard.clear();
        copy->v_Speak(nullptr, 1);
        EXPECT_EQ(room.heard, (Heard{"a1", "b1", "c1"}));
    }
}

TEST(Forum, AnAssignmentDoesNotLetGoOfTheOldList)
{
    Room room;
    CT_Forum holder;
    holder.v_AddListener(&room.b);
    Undestructed sharer;
    sharer.forum.v_Set(&holder);
    EXPECT_EQ(UsesOf(holder), 2U);
    sharer.forum = room.forum;
    EXPECT_EQ(UsesOf(holder), 2U);
    EXPECT_EQ(List(sharer.forum).n_GetCount(), 0U);
    // The test lets go of it in its place.
    sharer.forum = holder;
    sharer.forum.v_Set();
    EXPECT_EQ(UsesOf(holder), 1U);
}

TEST(Forum, ListenersAreNotToldOfTheEnd)
{
    Room room;
    {
        const auto forum = std::make_unique<CT_Forum>();
        forum->v_AddListener(&room.a);
    }
    EXPECT_EQ(room.heard, Heard());
}

// ---- Speaking -------------------------------------------------------------------------------

TEST(Forum, NobodyAnswersWithoutListeners)
{
    CT_Forum forum;
    EXPECT_EQ(forum.n_Speak(nullptr, 1), 0U);
    forum.v_Speak(nullptr, 1);
    forum.vv_Update(nullptr, 1);
}

TEST(Forum, ABareForumHearsNothingAndAnswersNothing)
{
    CT_Forum forum, listener;
    forum.v_AddListener(&listener);
    forum.v_Speak(nullptr, 1);
    EXPECT_EQ(forum.n_Speak(nullptr, 1), 0U);
    EXPECT_EQ(forum.n_Speak(&listener, 1), 0U);
}

TEST(Forum, TheFirstAnswerEndsTheWalk)
{
    Room room;
    room.AddAll();
    room.b.answer = 7;
    room.c.answer = 9;
    EXPECT_EQ(room.forum.n_Speak(nullptr, 3), 7U);
    EXPECT_EQ(room.heard, (Heard{"a3?", "b3?"}));
}

TEST(Forum, AllAreAskedWhereNobodyAnswers)
{
    Room room;
    room.AddAll();
    EXPECT_EQ(room.forum.n_Speak(nullptr, 0), 0U);
    EXPECT_EQ(room.heard, (Heard{"a0?", "b0?", "c0?"}));
    room.c.answer = 0xFFFFFFFF;
    EXPECT_EQ(room.forum.n_Speak(nullptr, 0), 0xFFFFFFFFU);
}

TEST(Forum, AMessageWithoutAnswerReachesAllWhateverTheyWouldAnswer)
{
    Room room;
    room.AddAll();
    room.a.answer = 7;
    EXPECT_EQ(room.Say(3), (Heard{"a3", "b3", "c3"}));
    EXPECT_EQ(room.a.speaker, &room.forum);
}

TEST(Forum, ANamedListenerHearsAloneOnTheListOrNot)
{
    Room room;
    room.forum.v_AddListener(&room.a);
    room.b.answer = 4;
    room.forum.v_Speak(&room.b, 1);
    EXPECT_EQ(room.forum.n_Speak(&room.b, 2), 4U);
    room.forum.v_Speak(&room.a, 3);
    EXPECT_EQ(room.forum.n_Speak(&room.a, 4), 0U);
    EXPECT_EQ(room.heard, (Heard{"b1", "b2?", "a3", "a4?"}));
    EXPECT_EQ(room.b.speaker, &room.forum);
}

TEST(Forum, UpdateSpeaksOneMessageAndPassesNothingOn)
{
    Room room;
    room.AddAll();
    room.forum.vv_Update(nullptr, 12, 1, 2, 3);
    EXPECT_EQ(room.heard, (Heard{"a4294967295", "b4294967295", "c4294967295"}));
    room.heard.clear();
    room.forum.vv_Update(&room.b, 0);
    EXPECT_EQ(room.heard, (Heard{"b4294967295"}));
}

TEST(Forum, AForumMayListenToItself)
{
    Heard heard;
    Listener forum(&heard, "f", 3);
    forum.v_AddListener(&forum);
    forum.v_Speak(nullptr, 1);
    EXPECT_EQ(forum.n_Speak(nullptr, 2), 3U);
    EXPECT_EQ(heard, (Heard{"f1", "f2?"}));
    EXPECT_EQ(forum.speaker, &forum);
}

// ---- Arguments ------------------------------------------------------------------------------

TEST(Forum, EachListenerReadsTheArgumentsFromTheFirst)
{
    Room room;
    room.AddAll();
    std::vector<int> read;
    for (Listener* listener : {&room.a, &room.b, &room.c})
        listener->digits = &read;
    room.forum.v_Speak(nullptr, 1, 4, 2, 0);
    EXPECT_EQ(read, (std::vector<int>{42, 42, 42}));
    read.clear();
    room.forum.n_Speak(nullptr, 1, 5, 6, 7, 8, 9, 1, 2, 3, 0);
    EXPECT_EQ(read, (std::vector<int>{56789123, 56789123, 56789123}));
    read.clear();
    room.forum.v_Speak(&room.b, 1, 9, 0);
    room.forum.n_Speak(&room.b, 1, 8, 0);
    EXPECT_EQ(read, (std::vector<int>{9, 8}));
}

TEST(Forum, AnArgumentPointerIsPassedByValue)
{
    Room room;
    room.AddAll();
    std::vector<int> read;
    for (Listener* listener : {&room.a, &room.b, &room.c})
        listener->digits = &read;
    for (const int with_answer : {0, 1}) {
        SCOPED_TRACE(with_answer);
        read.clear();
        EXPECT_EQ(SpeakVA(&room.forum, nullptr, with_answer, 4, 2, 0), 42);
        EXPECT_EQ(SpeakVA(&room.forum, &room.b, with_answer, 4, 2, 0), 42);
        EXPECT_EQ(read, (std::vector<int>{42, 42, 42, 42}));
    }
}

TEST(Forum, ArgumentsOfEveryKindArrive)
{
    struct Reader : CT_Forum
    {
        void vv_Listen(CT_Forum*, unsigned, va_list arguments) override
        {
            text = va_arg(arguments, const char*);
            number = va_arg(arguments, double);
            pointer = va_arg(arguments, const void*);
        }
        std::string text;
        double number = 0;
        const void* pointer = nullptr;
    };
    Reader reader;
    CT_Forum forum;
    forum.v_Speak(&reader, 1, "text", 2.5, static_cast<const void*>(&forum));
    EXPECT_EQ(reader.text, "text");
    EXPECT_EQ(reader.number, 2.5);
    EXPECT_EQ(reader.pointer, &forum);
}

// ---- The list -------------------------------------------------------------------------------

TEST(Forum, AListenerAddedTwiceHearsTwiceUntilItIsRemovedOnce)
{
    Room room;
    room.forum.v_AddListener(&room.a);
    room.forum.v_AddListener(&room.b);
    room.forum.v_AddListener(&room.a);
    EXPECT_EQ(room.Say(1), (Heard{"a1", "b1", "a1"}));
    room.forum.v_RemoveListener(&room.a);
    EXPECT_EQ(room.Say(2), (Heard{"b2", "a2"}));
    room.forum.v_RemoveListener(&room.a);
    EXPECT_EQ(room.Say(3), (Heard{"b3"}));
}

TEST(Forum, RemovingOneThatIsNotListedLeavesTheList)
{
    Room room;
    room.forum.v_RemoveListener(&room.a);
    EXPECT_EQ(room.Say(1), Heard());
    room.forum.v_AddListener(&room.a);
    room.forum.v_AddListener(&room.b);
    room.forum.v_RemoveListener(&room.c);
    EXPECT_EQ(room.Say(2), (Heard{"a2", "b2"}));
}

TEST(Forum, ANullListenerIsPassedOver)
{
    Room room;
    room.forum.v_AddListener(nullptr);
    room.forum.v_AddListener(&room.a);
    room.forum.v_AddListener(nullptr);
    EXPECT_EQ(room.Say(1), (Heard{"a1"}));
    EXPECT_EQ(room.forum.n_Speak(nullptr, 1), 0U);
}

// ---- Changes during a walk ------------------------------------------------------------------

TEST(Forum, AListenerAddedDuringTheWalkIsReachedInIt)
{
    Room room;
    room.forum.v_AddListener(&room.a);
    room.a.act = [&](CT_Forum* forum) {
        forum->v_AddListener(&room.b);
    };
    EXPECT_EQ(room.Say(1), (Heard{"a1", "b1"}));
}

TEST(Forum, AListenerThatRemovesItselfHidesItsSuccessor)
{
    Room room;
    room.AddAll();
    room.a.act = [&](CT_Forum* forum) {
        forum->v_RemoveListener(&room.a);
    };
    EXPECT_EQ(room.Say(1), (Heard{"a1", "c1"}));
    EXPECT_EQ(room.Say(2), (Heard{"b2", "c2"}));
}

TEST(Forum, RemovingAnEarlierListenerHidesTheNext)
{
    Room room;
    room.AddAll();
    room.b.act = [&](CT_Forum* forum) {
        forum->v_RemoveListener(&room.a);
    };
    EXPECT_EQ(room.Say(1), (Heard{"a1", "b1"}));
    EXPECT_EQ(room.Say(2), (Heard{"b2", "c2"}));
}

TEST(Forum, RemovingALaterListenerShortensTheWalk)
{
    Room room;
    room.AddAll();
    room.a.act = [&](CT_Forum* forum) {
        forum->v_RemoveListener(&room.b);
    };
    EXPECT_EQ(room.Say(1), (Heard{"a1", "c1"}));
    room.a.act = [&](CT_Forum* forum) {
        forum->v_Set();
    };
    EXPECT_EQ(room.Say(2), (Heard{"a2"}));
    EXPECT_EQ(room.Say(3), Heard());
}

TEST(Forum, TheWalkForAnAnswerFollowsChangesToo)
{
    Room room;
    room.AddAll();
    Listener d(&room.heard, "d", 4);
    room.a.act = [&](CT_Forum* forum) {
        forum->v_RemoveListener(&room.a);
    };
    room.c.act = [&](CT_Forum* forum) {
        forum->v_AddListener(&d);
    };
    EXPECT_EQ(room.forum.n_Speak(nullptr, 1), 4U);
    EXPECT_EQ(room.heard, (Heard{"a1?", "c1?", "d1?"}));
}

TEST(Forum, AListenerMaySpeakDuringTheWalk)
{
    Room room;
    room.AddAll();
    bool has_spoken = false;
    room.b.act = [&](CT_Forum* forum) {
        if (has_spoken)
            return;
        has_spoken = true;
        forum->v_Speak(nullptr, 2);
    };
    EXPECT_EQ(room.Say(1), (Heard{"a1", "b1", "a2", "b2", "c2", "c1"}));
}

TEST(Forum, AChangeDuringTheWalkLeavesTheWalkOfAForumThatSharedTheList)
{
    Room room;
    room.AddAll();
    CT_Forum other(&room.forum);
    room.a.act = [&](CT_Forum*) {
        room.forum.v_Set();
    };
    other.v_Speak(nullptr, 1);
    EXPECT_EQ(room.heard, (Heard{"a1", "b1", "c1"}));
    EXPECT_EQ(room.Say(2), Heard());
}
