#include "Commands/ChainOfCommand.h"

#include "tests/support/CapturedOutput.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

using Kestrin::ChainOfCommand;
using Kestrin::CommandSpecifier;
using Kestrin::RequestHandler;

namespace {

constexpr CommandSpecifier kCopy{1, 4};

enum class Answer { kNo, kYes, kThrows };

bool Give(Answer answer) {
    if (answer == Answer::kThrows)
        throw std::runtime_error("handler");
    return answer == Answer::kYes;
}

/// Writes into a diary what it is asked, and answers as told.
class Recorder : public RequestHandler {
public:
    Recorder(char name, std::string& diary, RequestHandler* successor = nullptr)
        : RequestHandler(successor)
        , fName(name)
        , fDiary(diary) {}

    void BecomeGopher() override { Note("+"); }
    bool StopBeingGopher() override {
        Note("-");
        return agreesToStop;
    }
    bool CanHandle(const CommandSpecifier& command) override {
        Note(command == kCopy ? "?" : "other?");
        return Give(wants);
    }
    bool HandleCommand(const CommandSpecifier&) override {
        Note("!");
        return Give(handles);
    }

    Answer wants = Answer::kNo;
    Answer handles = Answer::kYes;
    bool agreesToStop = true;

private:
    void Note(const char* what) { fDiary += std::string(1, fName) + what + ' '; }

    char fName;
    std::string& fDiary;
};

class ChainOfCommandTest : public testing::Test {
protected:
    ChainOfCommandTest() { chain.SetGopher(&a); }

    std::string TakeDiary() { return std::exchange(diary, {}); }

    ChainOfCommand& chain = *ChainOfCommand::Instance();
    std::string diary;
    Recorder c{'c', diary};
    Recorder b{'b', diary, &c};
    Recorder a{'a', diary, &b};
};

TEST_F(ChainOfCommandTest, OffersACommandUntilOneHandlesIt) {
    TakeDiary();
    a.wants = b.wants = c.wants = Answer::kYes;
    a.handles = Answer::kNo;
    EXPECT_TRUE(chain.DispatchCommand(kCopy));
    EXPECT_EQ(TakeDiary(), "a? a! b? b! ");
    EXPECT_TRUE(chain.CanHandle(kCopy));
    EXPECT_EQ(TakeDiary(), "a? ");
    a.wants = b.wants = c.wants = Answer::kNo;
    EXPECT_FALSE(chain.DispatchCommand(kCopy));
    EXPECT_FALSE(chain.CanHandle(kCopy));
    EXPECT_EQ(TakeDiary(), "a? b? c? a? b? c? ");
}

TEST_F(ChainOfCommandTest, PassesOverAnExceptionInAQueryAndEndsADispatchAtOne) {
    TakeDiary();
    a.wants = Answer::kThrows;
    b.wants = Answer::kYes;
    CapturedOutput query;
    EXPECT_TRUE(chain.CanHandle(kCopy));
    EXPECT_EQ(query.Text(), "A RequestHandler allowed an exception to escape from CanHandle");
    EXPECT_EQ(TakeDiary(), "a? b? ");

    const std::string message = "Caught exception while dispatching RequestHandler::HandleCommand ";
    CapturedOutput dispatch;
    EXPECT_TRUE(chain.DispatchCommand(kCopy));
    EXPECT_EQ(dispatch.Text(), message);
    a.wants = Answer::kYes;
    a.handles = Answer::kThrows;
    CapturedOutput handling;
    EXPECT_TRUE(chain.DispatchCommand(kCopy));
    EXPECT_EQ(handling.Text(), message);
    EXPECT_EQ(TakeDiary(), "a? a? a! ");
}

TEST_F(ChainOfCommandTest, ChangesTheGopherWhenThePresentOneAgrees) {
    EXPECT_EQ(TakeDiary(), "a+ ");
    EXPECT_TRUE(chain.SetGopher(&a));
    EXPECT_EQ(TakeDiary(), "");
    a.agreesToStop = false;
    EXPECT_FALSE(chain.SetGopher(&b));
    EXPECT_EQ(chain.GetGopher(), &a);
    a.agreesToStop = true;
    EXPECT_TRUE(chain.SetGopher(&b));
    EXPECT_EQ(TakeDiary(), "a- a- b+ ");
    EXPECT_FALSE(chain.IsInChain(&a));
    EXPECT_TRUE(chain.IsInChain(&c));
    EXPECT_TRUE(chain.SetGopher(nullptr));
    EXPECT_FALSE(chain.CanHandle(kCopy));
    EXPECT_FALSE(chain.DispatchCommand(kCopy));
    EXPECT_FALSE(chain.IsInChain(&c));
    EXPECT_FALSE(RequestHandler::IsInChain(nullptr, nullptr));
    EXPECT_EQ(TakeDiary(), "b- ");
}

TEST_F(ChainOfCommandTest, LosesWhatStoodBeforeADestroyedHandler) {
    auto middle = std::make_unique<Recorder>('m', diary, &c);
    a.SetSuccessor(middle.get());
    middle.reset();
    EXPECT_EQ(chain.GetGopher(), &c);
    EXPECT_EQ(TakeDiary(), "a+ a- c+ ");
    Recorder('x', diary, &a);
    EXPECT_EQ(chain.GetGopher(), &c);
}

TEST_F(ChainOfCommandTest, NeverLinksAHandlerToItself) {
    Recorder self('s', diary, &self);
    EXPECT_EQ(self.GetSuccessor(), nullptr);
    a.SetSuccessor(&a);
    EXPECT_EQ(a.GetSuccessor(), nullptr);
}

TEST(CommandSpecifier, IsOneToOneWithItsCode) {
    EXPECT_EQ((CommandSpecifier{1, 4}).Code(), 0x00010004u);
    EXPECT_EQ((CommandSpecifier{0, 10095}).Code(), 10095u);
    EXPECT_EQ((CommandSpecifier{0xFFFF, -2}).Code(), 0xFFFFFFFEu);
    for (const std::uint32_t code : {0u, 0x00018000u, 0x8000FFFFu, 6000u})
        EXPECT_EQ(CommandSpecifier::FromCode(code).Code(), code);
}

} // namespace
