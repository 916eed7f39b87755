#include "Diagnostics/Failure.h"

#include "tests/support/CapturedOutput.h"
#include "tests/support/RecordingLog.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

struct Outcome {
    int thrown = 0;
    std::string printed;
};

Outcome OutcomeOf(const std::function<void()>& fail) {
    RecordingLog::Clear();
    CapturedOutput output;
    Outcome outcome;
    try {
        fail();
    } catch (int status) {
        outcome.thrown = status;
    }
    outcome.printed = output.Text();
    return outcome;
}

TEST(Failure, PrintsLogsAndThrowsTheSameLine) {
    const Outcome text =
        OutcomeOf([] { Kestrin::FailString("Kestrin", "Source/XML/XMLWriter", 125); });
    EXPECT_EQ(text.thrown, -50);
    EXPECT_EQ(text.printed, "FailString Kestrin at file:Source/XML/XMLWriter line:125\n");
    ASSERT_EQ(RecordingLog::Lines().size(), 1u);
    EXPECT_EQ(RecordingLog::Lines().front(), text.printed);

    const Outcome missing = OutcomeOf([] { Kestrin::FailNILError("Source/UI/OSMenuHandle", 7); });
    EXPECT_EQ(missing.thrown, -50);
    EXPECT_EQ(missing.printed, "FailNIL, file:Source/UI/OSMenuHandle line:7\n");

    const Outcome status = OutcomeOf([] { Kestrin::FailOSError(-603, "Source/UI/View", 45); });
    EXPECT_EQ(status.thrown, -603);
    EXPECT_EQ(status.printed, "OSStatus error FFFFFDA5, file:Source/UI/View line:45\n");
}

} // namespace
