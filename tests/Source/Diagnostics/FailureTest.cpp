#include "Diagnostics/Failure.h"

#include "tests/support/CapturedOutput.h"
#include "tests/support/RecordingLog.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

void ExpectFailure(const std::function<void()>& fail, int status, const std::string& line) {
    RecordingLog::Clear();
    CapturedOutput output;
    int thrown = 0;
    try {
        fail();
    } catch (int code) {
        thrown = code;
    }
    EXPECT_EQ(output.Text(), line);
    EXPECT_EQ(RecordingLog::Lines(), std::vector<std::string>{line});
    EXPECT_EQ(thrown, status);
}

TEST(Failure, PrintsLogsAndThrowsTheSameLine) {
    ExpectFailure([] { Kestrin::FailString("Kestrin", "Source/XML/XMLWriter", 125); }, -50,
                  "FailString Kestrin at file:Source/XML/XMLWriter line:125\n");
    ExpectFailure([] { Kestrin::FailNILError("Source/UI/OSMenuHandle", 7); }, -50,
                  "FailNIL, file:Source/UI/OSMenuHandle line:7\n");
    ExpectFailure([] { Kestrin::FailOSError(-603, "Source/UI/View", 45); }, -603,
                  "OSStatus error FFFFFDA5, file:Source/UI/View line:45\n");
}

} // namespace
