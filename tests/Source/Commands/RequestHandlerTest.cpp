#include "Commands/ChainOfCommand.h"

#include <gtest/gtest.h>

#include <memory>

using namespace Kestrin;

namespace {

constexpr CommandSpecifier kCopy{1, 4};

/// Writes into a diary what it is asked, and answers as told: 'y' yes, 'n' no.
struct Recorder : RequestHandler {
    Recorder(char ownName, std::string& commonDiary, RequestHandler* successor = nullptr)
        : RequestHandler(successor)
        , name(ownName)
        , diary(commonDiary) {}

    void BecomeGopher() override { Answer('+', 'y'); }
    bool StopBeingGopher() override { return Answer('-', stops); }
    bool CanHandle(const CommandSpecifier&) override { return Answer('?', wants); }
    bool HandleCommand(const CommandSpecifier&) override { return Answer('!', handles); }

    bool Answer(char question, char answer) {
        diary += {name, question, ' '};
        return answer == 'y';
    }

    const char name;
    std::string& diary;
    char wants = 'n';
    char handles = 'y';
    char stops = 'y';
};

class ChainOfCommandTest : public testing::Test {
protected:
    ChainOfCommandTest() { chain.SetGopher(&a); }

    void ExpectDiary(const char* text) { EXPECT_EQ(std::exchange(diary, {}), text); }

    ChainOfCommand& chain = *ChainOfCommand::Instance();
    std::string diary;
    Recorder b{'b', diary};
    Recorder a{'a', diary, &b};
};

TEST_F(ChainOfCommandTest, OffersACommandUntilOneHandlesIt) {
    ExpectDiary("a+ ");
    a.wants = b.wants = 'y';
    a.handles = 'n';
    EXPECT_TRUE(chain.DispatchCommand(kCopy));
    ExpectDiary("a? a! b? b! ");
    a.wants = b.wants = 'n';
    EXPECT_FALSE(chain.DispatchCommand(kCopy));
    EXPECT_FALSE(chain.CanHandle(kCopy));
    ExpectDiary("a? b? a? b? ");
}

TEST_F(ChainOfCommandTest, ChangesTheGopherWhenThePresentOneAgrees) {
    a.stops = 'n';
    EXPECT_FALSE(chain.SetGopher(&b));
    EXPECT_TRUE(chain.IsInChain(&a));
    a.stops = 'y';
    EXPECT_TRUE(chain.SetGopher(&b));
    EXPECT_FALSE(chain.IsInChain(&a));
    EXPECT_TRUE(chain.SetGopher(nullptr));
    EXPECT_FALSE(chain.DispatchCommand(kCopy));
    ExpectDiary("a+ a- a- b+ b- ");
}

TEST_F(ChainOfCommandTest, LosesWhatStoodBeforeADestroyedHandlerAndNeverLinksOneToItself) {
    auto middle = std::make_unique<Recorder>('m', diary, &b);
    a.SetSuccessor(middle.get());
    middle.reset();
    EXPECT_EQ(chain.GetGopher(), &b);
    ExpectDiary("a+ a- b+ ");
    a.SetSuccessor(&a);
    EXPECT_EQ(a.GetSuccessor(), nullptr);
}

} // namespace
