// tests/System/Forum/ForumModelTest.cpp: forums against lists of numbers, with listeners that come
// and go while a forum speaks.
#include <System/Forum/Forum.h>

#include <gtest/gtest.h>

#include "Support/Directory.h"

#include <algorithm>
#include <deque>
#include <random>
#include <string>
#include <vector>

namespace
{
constexpr unsigned LISTENERS = 6;
constexpr unsigned FORUMS = 3;

// A change of one of the forums.
struct Change
{
    enum Kind
    {
        NOTHING,
        SHARE,
        EMPTY,
        ADD,
        REMOVE
    } kind;
    unsigned forum, argument;
};

struct Model
{
    void Do(const Change& change)
    {
        std::vector<unsigned>& list = lists[change.forum];
        const auto found = std::find(list.begin(), list.end(), change.argument);
        if (change.kind == Change::ADD)
            list.push_back(change.argument);
        else if (change.kind == Change::REMOVE && found != list.end())
            list.erase(found);
        else if (change.kind == Change::SHARE)
            list = std::vector<unsigned>(lists[change.argument % FORUMS]);
        else if (change.kind == Change::EMPTY)
            list.clear();
    }

    // Who hears, each of the first hearers doing a change; with answers, one of them ends the walk.
    std::vector<unsigned> Walk(unsigned forum, std::deque<Change> changes, const unsigned* answers)
    {
        std::vector<unsigned> hearers;
        for (unsigned at = 0; at < lists[forum].size(); ++at) {
            hearers.push_back(lists[forum][at]);
            if (!changes.empty()) {
                Do(changes.front());
                changes.pop_front();
            }
            if (answers && answers[hearers.back()])
                break;
        }
        return hearers;
    }

    std::vector<unsigned> lists[FORUMS];
};

// The forums themselves.
struct Real
{
    struct Member : CT_Forum
    {
        void vv_Listen(CT_Forum*, unsigned, va_list) override { owner->Hear(number); }
        unsigned vn_Listen(CT_Forum*, unsigned, va_list) override
        {
            owner->Hear(number);
            return owner->answers[number];
        }
        Real* owner = nullptr;
        unsigned number = 0;
    };

    Real()
    {
        for (unsigned n = 0; n < LISTENERS; ++n) {
            members[n].owner = this;
            members[n].number = n;
        }
    }

    void Do(const Change& change)
    {
        CT_Forum& forum = forums[change.forum];
        const CT_Forum& other = forums[change.argument % FORUMS];
        if (change.kind == Change::ADD)
            forum.v_AddListener(&members[change.argument]);
        else if (change.kind == Change::REMOVE)
            forum.v_RemoveListener(&members[change.argument]);
        else if (change.kind == Change::SHARE && &other != &forum)
            forum.v_Set(&other);
        else if (change.kind == Change::EMPTY)
            forum.v_Set();
    }

    void Hear(unsigned number)
    {
        hearers.push_back(number);
        if (changes.empty())
            return;
        const Change change = changes.front();
        changes.pop_front();
        Do(change);
    }

    CT_Forum forums[FORUMS];
    Member members[LISTENERS];
    unsigned answers[LISTENERS] = {};
    std::deque<Change> changes;
    std::vector<unsigned> hearers;
};

struct Comparison
{
    explicit Comparison(unsigned seed) : random(seed) {}

    unsigned Below(unsigned limit) { return static_cast<unsigned>(random() % limit); }

    Change AnyChange()
    {
        const unsigned rare = Below(20);
        const Change::Kind kind = rare < 3    ? static_cast<Change::Kind>(rare)
                                  : rare < 12 ? Change::ADD
                                              : Change::REMOVE;
        return {kind, Below(FORUMS), Below(LISTENERS)};
    }

    void Walk()
    {
        const unsigned forum = Below(FORUMS);
        std::deque<Change> changes(Below(8));
        for (Change& change : changes)
            change = AnyChange();
        for (unsigned& answer : real.answers)
            answer = Below(6) ? 0 : 1 + Below(1000);
        const bool with_answer = Below(2);
        const std::vector<unsigned> wanted =
            model.Walk(forum, changes, with_answer ? real.answers : nullptr);
        real.hearers.clear();
        real.changes = changes;
        if (with_answer) {
            const unsigned answer = real.forums[forum].n_Speak(nullptr, 1);
            EXPECT_EQ(answer, wanted.empty() ? 0 : real.answers[wanted.back()]);
        } else {
            real.forums[forum].v_Speak(nullptr, 1);
        }
        EXPECT_EQ(real.hearers, wanted);
        real.changes.clear();
    }

    void ExpectLists()
    {
        for (unsigned forum = 0; forum < FORUMS; ++forum) {
            real.hearers.clear();
            real.forums[forum].v_Speak(nullptr, 1);
            EXPECT_EQ(real.hearers, model.lists[forum]) << "forum " << forum;
        }
    }

    void Step()
    {
        if (Below(3)) {
            const Change change = AnyChange();
            model.Do(change);
            real.Do(change);
        } else {
            Walk();
        }
        ExpectLists();
    }

    std::mt19937 random;
    Model model;
    Real real;
};
} // namespace

TEST(Forum, WalksWithListenersThatComeAndGoGoAsTheModelGoes)
{
    const unsigned first = Seed(99);
    for (unsigned seed = first; seed < first + 10; ++seed) {
        SCOPED_TRACE("OSTRA_SEED=" + std::to_string(seed));
        Comparison run(seed);
        for (unsigned step = 0; step < 1000 && !testing::Test::HasFailure(); ++step)
            run.Step();
    }
}
